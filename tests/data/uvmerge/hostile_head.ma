createNode mesh -n "h";
	setAttr ".uvst[0].uvsn" -type "string" "map1";setAttr -s @ ".uvst[0].uvsp";
	setAttr ".uvst[0].uvsp[0:@]" -type "float2"
 0.5 0.5;
	setAttr -s @ ".ed";
	setAttr ".ed[0:@]"
 0 @ 0 @ 1 0 1 0 0;
	setAttr -s 1 ".fc";
	setAttr ".fc[0:0]" -type "polyFaces"
 f 3 0 1 2 mu 0 3 0 0 0;
//