//Maya ASCII scene with the reader's quirks
	setAttr -s 2 ".ed";
createNode mesh -n "quirkShape";
  SETATTR ".T" -type "double3" 1 2 3 ;
	setAttr ".uvst[0].uvsn" -type "string" "map1";setAttr -s 5 ".uvst[0].uvsp";
	setAttr ".cuvs" -type "string" "map1";
	setAttr ".uvst[0].uvsp[0:4]" -type "float2"
    
	 0.5 0.25 -0.25 1-2 .5 0.5 2.5.5 0.125 0.5 1e-3 7 7;
	setAttr -s 4 ".ed";
	setAttr ".ed[0:3]"
	 0 1 0 1 2 0 2 0 0;
	setAttr ".s" -type "double3" 2 2 2 ;
	setAttr -s 3 ".fc";
	setAttr ".fc[0:2]" -type "polyFaces"
	 f 3 0 1 2 mu 0 3 0 1 2 F 3 -3 -2 -1 mu 0 3 3 4 -1;
	setAttr ".rgvtx" yes;
// END OF quirks.ma
this line and the ones below are cut
createNode transform -n "other";
