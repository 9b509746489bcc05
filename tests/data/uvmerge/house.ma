//Maya ASCII 2016 scene
//Name: house.ma
requires maya "2016";
createNode transform -n "house";
	setAttr ".t" -type "double3" 0 0 0 ;
	setAttr ".r" -type "double3" 0 0 0 ;
	setAttr ".s" -type "double3" 1 1 1 ;
createNode mesh -n "houseShape" -p "house";
	setAttr -k off ".v";
	setAttr ".vir" yes;
	setAttr ".vif" yes;
	setAttr ".uvst[0].uvsn" -type "string" "map1";setAttr -s 33 ".uvst[0].uvsp";
	setAttr ".uvst[0].uvsp[0:32]" -type "float2"
 0.05000 0.05000 0.50000 0.05000 0.50000 0.35000 0.05000 0.35000 0.50000 0.05000 0.95000 0.05000 0.95000 0.35000 0.50000 0.35000 1.05000 0.05000 1.95000 0.05000 1.95000 0.35000 1.05000 0.35000 0.05000 0.35000 0.50000 0.35000 0.50000 0.65000 0.05000 0.65000 0.50000 0.35000 0.95000 0.35000 0.95000 0.65000 0.50000 0.65000 1.05000 0.35000 1.95000 0.35000 1.95000 0.65000 1.05000 0.65000 1.05000 0.70000 1.35000 0.70000 1.20000 0.95000 1.35000 0.70000 1.65000 0.70000 1.50000 0.95000 1.65000 0.70000 1.95000 0.70000 1.80000 0.95000;
	setAttr ".cuvs" -type "string" "map1";
	setAttr ".dcc" -type "string" "Ambient+Diffuse";
	setAttr -s 15 ".vt";
	setAttr ".vt[0:14]" -type "float3"
 -1.875 -0.625 0 -0.625 -0.625 0.1 0.625 -0.625 0 1.875 -0.625 0.1 -1.875 0.625 -0.05 -0.625 0.625 0.05 0.625 0.625 -0.05 1.875 0.625 0.05 -1.875 1.875 -0.1 -0.625 1.875 0 0.625 1.875 -0.1 1.875 1.875 0 -1.25 2.75 0 0 2.75 0.0625 1.25 2.75 0.125;
	setAttr -s 23 ".ed";
	setAttr ".ed[0:22]"
 0 1 0 1 5 0 5 4 0 4 0 0 1 2 0 2 6 0 6 5 0 2 3 0 3 7 0 7 6 0 5 9 0 9 8 0 8 4 0 6 10 0 10 9 0 7 11 0 11 10 0 9 12 0 12 8 0 10 13 0 13 9 0 11 14 0 14 10 0;
	setAttr -s 9 ".fc";
	setAttr ".fc[0:8]" -type "polyFaces"
 f 4 0 1 2 3 mu 0 4 0 1 2 3 f 4 4 5 6 -2 mu 0 4 4 5 6 7 f 4 7 8 9 -6 mu 0 4 8 9 10 11 f 4 -3 10 11 12 mu 0 4 12 13 14 15 f 4 -7 13 14 -11 mu 0 4 16 17 18 19 f 4 -10 15 16 -14 mu 0 4 20 21 22 23 f 3 -12 17 18 mu 0 3 24 25 26 f 3 -15 19 20 mu 0 3 27 28 29 f 3 -17 21 22 mu 0 3 30 31 32;
	setAttr ".cd" -type "dataPolyComponent" Index_Data Edge 0 ;
// End of house.ma
