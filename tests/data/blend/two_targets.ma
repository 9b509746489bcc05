base

smile


blink




createNode groupId -n "groupId1";
	setAttr ".ihi" 0;
createNode groupParts -n "groupParts1";
	setAttr ".ihi" 0;
	setAttr ".ic" -type "componentList" 1 "f[0:1]";
createNode blendShape -n "blendShape1";
  addAttr -ci true -h true -sn "aal" -ln "attributeAliasList" -bt "ATAL" -dt "attributeAlias";
setAttr -s 2 ".w[0:1]"  0  0 ;
setAttr -s 2 ".it[0].itg";
setAttr ".aal" -type "attributeAlias" {"Smile","weight[0]",
"Blink","weight[1]"};
createNode tweak -n "tweak1";
createNode objectSet -n "blendShape1Set";
	setAttr ".ihi" 0;
	setAttr ".vo" yes;
createNode groupId -n "blendShape1GroupId";
	setAttr ".ihi" 0;
createNode groupParts -n "blendShape1GroupParts";
	setAttr ".ihi" 0;
	setAttr ".ic" -type "componentList" 1 "vtx[*]";
createNode objectSet -n "tweakSet1";
	setAttr ".ihi" 0;
	setAttr ".vo" yes;
createNode groupId -n "groupId3";
	setAttr ".ihi" 0;
createNode groupParts -n "groupParts3";
	setAttr ".ihi" 0;
	setAttr ".ic" -type "componentList" 1 "vtx[*]";
 connectAttr "groupId1.id" "HeadShape.iog.og[0].gid";
 connectAttr "Head:defaultMat.mwc" "HeadShape.iog.og[0].gco";
 connectAttr "blendShape1GroupId.id" "HeadShape.iog.og[3].gid";
 connectAttr "blendShape1Set.mwc" "HeadShape.iog.og[3].gco";
 connectAttr "groupId3.id" "HeadShape.iog.og[4].gid";
 connectAttr "tweakSet1.mwc" "HeadShape.iog.og[4].gco";
 connectAttr "blendShape1.og[0]" "HeadShape.i";
 connectAttr "tweak1.vl[0].vt[0]" "HeadShape.twl";
 connectAttr "Smile:groupId1.id" "SmileShape.iog.og[0].gid";
 connectAttr "Smile:defaultMat.mwc" "SmileShape.iog.og[0].gco";
 connectAttr "Blink:groupId1.id" "BlinkShape.iog.og[0].gid";
 connectAttr "Blink:defaultMat.mwc" "BlinkShape.iog.og[0].gco";
 connectAttr "layerManager.dli[0]" "defaultLayer.id";
 connectAttr "renderLayerManager.rlmi[0]" "defaultRenderLayer.rlid";
  connectAttr "Head:defaultMat1.oc" "Head:defaultMat.ss";
  connectAttr "groupId1.msg" "Head:defaultMat.gn" -na;
  connectAttr "HeadShape.iog.og[0]" "Head:defaultMat.dsm" -na;
  connectAttr "Head:defaultMat.msg" "Head:materialInfo1.sg";
  connectAttr "v:defaultMat1.msg" "Head:materialInfo1.m";
  connectAttr "Smile:defaultMat1.oc" "Smile:defaultMat.ss";
  connectAttr "Smile:groupId1.msg" "Smile:defaultMat.gn" -na;
  connectAttr "SmileShape.iog.og[0]" "Smile:defaultMat.dsm" -na;
  connectAttr "Smile:defaultMat.msg" "Smile:materialInfo1.sg";
  connectAttr "Smile:defaultMat1.msg" "Smile:materialInfo1.m";
  connectAttr "Blink:defaultMat1.oc" "Blink:defaultMat.ss";
  connectAttr "Blink:groupId1.msg" "Blink:defaultMat.gn" -na;
  connectAttr "BlinkShape.iog.og[0]" "Blink:defaultMat.dsm" -na;
  connectAttr "Blink:defaultMat.msg" "Blink:materialInfo1.sg";
  connectAttr "Blink:defaultMat1.msg" "Blink:materialInfo1.m";
	connectAttr "HeadShapeOrig.w" "groupParts1.ig";
	connectAttr "groupId1.id" "groupParts1.gi";
	connectAttr "blendShape1GroupParts.og" "blendShape1.ip[0].ig";
	connectAttr "blendShape1GroupId.id" "blendShape1.ip[0].gi";
	connectAttr "SmileShape.w" "blendShape1.it[0].itg[0].iti[6000].igt";
	connectAttr "BlinkShape.w" "blendShape1.it[0].itg[1].iti[6000].igt";
  connectAttr "groupParts3.og" "tweak1.ip[0].ig";
  connectAttr "groupId3.id" "tweak1.ip[0].gi";
  connectAttr "blendShape1GroupId.msg" "blendShape1Set.gn" -na;
  connectAttr "HeadShape.iog.og[3]" "blendShape1Set.dsm" -na;
  connectAttr "blendShape1.msg" "blendShape1Set.ub[0]";
  connectAttr "tweak1.og[0]" "blendShape1GroupParts.ig";
  connectAttr "blendShape1GroupId.id" "blendShape1GroupParts.gi";
  connectAttr "groupId3.msg" "tweakSet1.gn" -na;
  connectAttr "HeadShape.iog.og[4]" "tweakSet1.dsm" -na;
  connectAttr "tweak1.msg" "tweakSet1.ub[0]";
  connectAttr "groupParts1.og" "groupParts3.ig";
  connectAttr "groupId3.id" "groupParts3.gi";
  connectAttr "Head:defaultMat.pa" ":renderPartition.st" -na;
  connectAttr "Smile:defaultMat.pa" ":renderPartition.st" -na;
  connectAttr "Blink:defaultMat.pa" ":renderPartition.st" -na;
  connectAttr "Head:defaultMat1.msg" ":defaultShaderList1.s" -na;
  connectAttr "Smile:defaultMat1.msg" ":defaultShaderList1.s" -na;
  connectAttr "Blink:defaultMat1.msg" ":defaultShaderList1.s" -na;
  connectAttr "lightLinker1.msg" ":lightList1.ln" -na;

createNode script -n "ShowBP";
  setAttr ".b" -type "string" "if(`window -exists bpWindow`){deleteUI bpWindow;}; window -rtf 0 -title \"Blend Shapes\" bpWindow;frameLayout -lv 0;blendShapePanel;window -edit -widthHeight 250 350 -tlc 200 200 bpWindow; showWindow bpWindow;";
  setAttr ".st" 1;


