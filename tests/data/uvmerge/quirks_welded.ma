//Maya ASCII scene with the reader's quirks
	setAttr -s 2 ".ed";
createNode mesh -n "quirkShape";
	setAttr ".uvst[0].uvsn" -type "string" "map1";setAttr -s 6 ".uvst[0].uvsp";
	setAttr ".cuvs" -type "string" "map1";
	setAttr ".uvst[0].uvsp[0:5]" -type "float2"
 25.50000 0.12500 0.50000 0.25000 0.00000 0.00000 -0.25000 -12.00000 0.50000 1.00000 0.50000 0.50000;
	setAttr -s 4 ".ed";
	setAttr ".ed[0:3]"
	 0 1 0 1 2 0 2 0 0;
	setAttr -s 2 ".fc";
	setAttr ".fc[0:1]" -type "polyFaces"
 f 3 0 1 2 mu 0 3 1 3 5 f 3 -3 -2 -1 mu 0 3 0 4 2;
	setAttr ".rgvtx" yes;
// END OF quirks.ma
