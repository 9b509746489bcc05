//Maya ASCII 2016 scene
//Name: house.ma
requires maya "2016";
createNode transform -n "house";
createNode mesh -n "houseShape" -p "house";
	setAttr -k off ".v";
	setAttr ".vir" yes;
	setAttr ".vif" yes;
	setAttr ".uvst[0].uvsn" -type "string" "map1";setAttr -s 22 ".uvst[0].uvsp";
	setAttr ".uvst[0].uvsp[0:21]" -type "float2"
 0.05000 0.05000 0.50000 0.05000 1.05000 0.05000 0.95000 0.05000 1.95000 0.05000 0.05000 0.35000 0.50000 0.35000 1.05000 0.35000 0.95000 0.35000 1.95000 0.35000 1.05000 0.70000 0.05000 0.65000 1.35000 0.70000 0.50000 0.65000 1.65000 0.70000 1.05000 0.65000 0.95000 0.65000 1.95000 0.70000 1.95000 0.65000 1.20000 0.95000 1.50000 0.95000 1.80000 0.95000;
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
 f 4 0 1 2 3 mu 0 4 0 1 6 5 f 4 4 5 6 -2 mu 0 4 1 3 8 6 f 4 7 8 9 -6 mu 0 4 2 4 9 7 f 4 -3 10 11 12 mu 0 4 5 6 13 11 f 4 -7 13 14 -11 mu 0 4 6 8 16 13 f 4 -10 15 16 -14 mu 0 4 7 9 18 15 f 3 -12 17 18 mu 0 3 10 12 19 f 3 -15 19 20 mu 0 3 12 14 20 f 3 -17 21 22 mu 0 3 14 17 21;
	setAttr ".cd" -type "dataPolyComponent" Index_Data Edge 0 ;
// End of house.ma
