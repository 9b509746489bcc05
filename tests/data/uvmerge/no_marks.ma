//Maya ASCII scene without UV statements
createNode transform -n "box";
	setAttr ".t" -type "double3" 1 2 3 ;
	setAttr ".r" -type "double3" 0 90 0 ;
	setAttr ".s" -type "double3" 2 2 2 ;
	setAttr ".rp" -type "double3" 0 0 0 ;
	setAttr ".sp" -type "double3" 0 0 0 ;
	setAttr -s 8 ".ed";
	setAttr ".fc[0:5]" -type "polyFaces"
 f 4 0 1 2 3 mu 0 4 0 1 2 3;
// End of box.ma
select -ne :time1;
