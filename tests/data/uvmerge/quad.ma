createNode mesh -n "quadShape";
	setAttr ".uvst[0].uvsn" -type "string" "map1";setAttr -s 4 ".uvst[0].uvsp";
	setAttr ".uvst[0].uvsp[0:3]" -type "float2"
 0 0 1 0 1 1 0 1;
	setAttr -s 4 ".ed";
	setAttr ".ed[0:3]"
 0 1 0 1 2 0 2 3 0 3 0 0;
	setAttr -s 1 ".fc";
	setAttr ".fc[0:0]" -type "polyFaces"
 f 4 0 1 2 3 mu 0 4 0 1 2 3;
