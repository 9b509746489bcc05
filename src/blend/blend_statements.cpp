#include "blend/blend_statements.h"

#include "foundation/text_writer.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace neq::blend {
namespace {

enum class Repeat {
    once,
    perTarget, // consecutive perTarget lines are written as a group, once per target
    weights,   // the weight list: one "  0" per target
    aliases,   // the alias list: one entry per target, a line break between entries
};

struct Line {
    Repeat repeat;
    const char* text; // "<base>", "<target>", "<i>", "<count>", "<last>" are substituted
};

// clang-format off
constexpr Line kLines[] = {
    {Repeat::once, ""},
    {Repeat::once, ""},
    {Repeat::once, R"(createNode groupId -n "groupId1";)"},
    {Repeat::once, "\t" R"(setAttr ".ihi" 0;)"},
    {Repeat::once, R"(createNode groupParts -n "groupParts1";)"},
    {Repeat::once, "\t" R"(setAttr ".ihi" 0;)"},
    // The face list runs to the target count minus one, not to the base's face count;
    // scenes written this way have always carried it.
    {Repeat::once, "\t" R"(setAttr ".ic" -type "componentList" 1 "f[0:<last>]";)"},
    {Repeat::once, R"(createNode blendShape -n "blendShape1";)"},
    {Repeat::once, R"(  addAttr -ci true -h true -sn "aal" -ln "attributeAliasList" -bt "ATAL" -dt "attributeAlias";)"},
    {Repeat::weights, nullptr},
    {Repeat::once, R"(setAttr -s <count> ".it[0].itg";)"},
    {Repeat::aliases, nullptr},
    {Repeat::once, R"(createNode tweak -n "tweak1";)"},
    {Repeat::once, R"(createNode objectSet -n "blendShape1Set";)"},
    {Repeat::once, "\t" R"(setAttr ".ihi" 0;)"},
    {Repeat::once, "\t" R"(setAttr ".vo" yes;)"},
    {Repeat::once, R"(createNode groupId -n "blendShape1GroupId";)"},
    {Repeat::once, "\t" R"(setAttr ".ihi" 0;)"},
    {Repeat::once, R"(createNode groupParts -n "blendShape1GroupParts";)"},
    {Repeat::once, "\t" R"(setAttr ".ihi" 0;)"},
    {Repeat::once, "\t" R"(setAttr ".ic" -type "componentList" 1 "vtx[*]";)"},
    {Repeat::once, R"(createNode objectSet -n "tweakSet1";)"},
    {Repeat::once, "\t" R"(setAttr ".ihi" 0;)"},
    {Repeat::once, "\t" R"(setAttr ".vo" yes;)"},
    {Repeat::once, R"(createNode groupId -n "groupId3";)"},
    {Repeat::once, "\t" R"(setAttr ".ihi" 0;)"},
    {Repeat::once, R"(createNode groupParts -n "groupParts3";)"},
    {Repeat::once, "\t" R"(setAttr ".ihi" 0;)"},
    {Repeat::once, "\t" R"(setAttr ".ic" -type "componentList" 1 "vtx[*]";)"},
    {Repeat::once, R"( connectAttr "groupId1.id" "<base>Shape.iog.og[0].gid";)"},
    {Repeat::once, R"( connectAttr "<base>:defaultMat.mwc" "<base>Shape.iog.og[0].gco";)"},
    {Repeat::once, R"( connectAttr "blendShape1GroupId.id" "<base>Shape.iog.og[3].gid";)"},
    {Repeat::once, R"( connectAttr "blendShape1Set.mwc" "<base>Shape.iog.og[3].gco";)"},
    {Repeat::once, R"( connectAttr "groupId3.id" "<base>Shape.iog.og[4].gid";)"},
    {Repeat::once, R"( connectAttr "tweakSet1.mwc" "<base>Shape.iog.og[4].gco";)"},
    {Repeat::once, R"( connectAttr "blendShape1.og[0]" "<base>Shape.i";)"},
    {Repeat::once, R"( connectAttr "tweak1.vl[0].vt[0]" "<base>Shape.twl";)"},
    {Repeat::perTarget, R"( connectAttr "<target>:groupId1.id" "<target>Shape.iog.og[0].gid";)"},
    {Repeat::perTarget, R"( connectAttr "<target>:defaultMat.mwc" "<target>Shape.iog.og[0].gco";)"},
    {Repeat::once, R"( connectAttr "layerManager.dli[0]" "defaultLayer.id";)"},
    {Repeat::once, R"( connectAttr "renderLayerManager.rlmi[0]" "defaultRenderLayer.rlid";)"},
    {Repeat::once, R"(  connectAttr "<base>:defaultMat1.oc" "<base>:defaultMat.ss";)"},
    {Repeat::once, R"(  connectAttr "groupId1.msg" "<base>:defaultMat.gn" -na;)"},
    {Repeat::once, R"(  connectAttr "<base>Shape.iog.og[0]" "<base>:defaultMat.dsm" -na;)"},
    {Repeat::once, R"(  connectAttr "<base>:defaultMat.msg" "<base>:materialInfo1.sg";)"},
    // The base's material info takes its material from "v:defaultMat1" whatever the
    // base is called: the host's base scenes have always provided that node.
    {Repeat::once, R"(  connectAttr "v:defaultMat1.msg" "<base>:materialInfo1.m";)"},
    {Repeat::perTarget, R"(  connectAttr "<target>:defaultMat1.oc" "<target>:defaultMat.ss";)"},
    {Repeat::perTarget, R"(  connectAttr "<target>:groupId1.msg" "<target>:defaultMat.gn" -na;)"},
    {Repeat::perTarget, R"(  connectAttr "<target>Shape.iog.og[0]" "<target>:defaultMat.dsm" -na;)"},
    {Repeat::perTarget, R"(  connectAttr "<target>:defaultMat.msg" "<target>:materialInfo1.sg";)"},
    {Repeat::perTarget, R"(  connectAttr "<target>:defaultMat1.msg" "<target>:materialInfo1.m";)"},
    {Repeat::once, "\t" R"(connectAttr "<base>ShapeOrig.w" "groupParts1.ig";)"},
    {Repeat::once, "\t" R"(connectAttr "groupId1.id" "groupParts1.gi";)"},
    {Repeat::once, "\t" R"(connectAttr "blendShape1GroupParts.og" "blendShape1.ip[0].ig";)"},
    {Repeat::once, "\t" R"(connectAttr "blendShape1GroupId.id" "blendShape1.ip[0].gi";)"},
    {Repeat::perTarget, "\t" R"(connectAttr "<target>Shape.w" "blendShape1.it[0].itg[<i>].iti[6000].igt";)"},
    {Repeat::once, R"(  connectAttr "groupParts3.og" "tweak1.ip[0].ig";)"},
    {Repeat::once, R"(  connectAttr "groupId3.id" "tweak1.ip[0].gi";)"},
    {Repeat::once, R"(  connectAttr "blendShape1GroupId.msg" "blendShape1Set.gn" -na;)"},
    {Repeat::once, R"(  connectAttr "<base>Shape.iog.og[3]" "blendShape1Set.dsm" -na;)"},
    {Repeat::once, R"(  connectAttr "blendShape1.msg" "blendShape1Set.ub[0]";)"},
    {Repeat::once, R"(  connectAttr "tweak1.og[0]" "blendShape1GroupParts.ig";)"},
    {Repeat::once, R"(  connectAttr "blendShape1GroupId.id" "blendShape1GroupParts.gi";)"},
    {Repeat::once, R"(  connectAttr "groupId3.msg" "tweakSet1.gn" -na;)"},
    {Repeat::once, R"(  connectAttr "<base>Shape.iog.og[4]" "tweakSet1.dsm" -na;)"},
    {Repeat::once, R"(  connectAttr "tweak1.msg" "tweakSet1.ub[0]";)"},
    {Repeat::once, R"(  connectAttr "groupParts1.og" "groupParts3.ig";)"},
    {Repeat::once, R"(  connectAttr "groupId3.id" "groupParts3.gi";)"},
    {Repeat::once, R"(  connectAttr "<base>:defaultMat.pa" ":renderPartition.st" -na;)"},
    {Repeat::perTarget, R"(  connectAttr "<target>:defaultMat.pa" ":renderPartition.st" -na;)"},
    {Repeat::once, R"(  connectAttr "<base>:defaultMat1.msg" ":defaultShaderList1.s" -na;)"},
    {Repeat::perTarget, R"(  connectAttr "<target>:defaultMat1.msg" ":defaultShaderList1.s" -na;)"},
    {Repeat::once, R"(  connectAttr "lightLinker1.msg" ":lightList1.ln" -na;)"},
    {Repeat::once, ""},
    {Repeat::once, R"(createNode script -n "ShowBP";)"},
    // Opens a 250 x 350 blend-shape editor window at 200, 200 when the scene loads.
    {Repeat::once, R"mel(  setAttr ".b" -type "string" "if(`window -exists bpWindow`){deleteUI bpWindow;}; window -rtf 0 -title \"Blend Shapes\" bpWindow;frameLayout -lv 0;blendShapePanel;window -edit -widthHeight 250 350 -tlc 200 200 bpWindow; showWindow bpWindow;";)mel"},
    {Repeat::once, R"(  setAttr ".st" 1;)"},
    {Repeat::once, ""},
    {Repeat::once, ""},
};
// clang-format on

constexpr std::size_t kLineCount = sizeof(kLines) / sizeof(kLines[0]);

// What the placeholders of one line stand for.
struct Substitutions {
    const std::string& base;
    std::int64_t count;
    const std::string* target; // null outside per-target lines
    std::int64_t index;
};

// Writes one line with its placeholders filled in and its newline.
void writeLine(TextWriter& out, const char* line, const Substitutions& with) {
    static constexpr std::string_view kBase = "<base>", kTarget = "<target>", kIndex = "<i>",
                                      kCount = "<count>", kLast = "<last>";
    for (const char* p = line; *p != '\0';) {
        const std::string_view rest(p);
        if (*p != '<') {
            const char* next = std::strchr(p, '<');
            const std::size_t plain = next ? static_cast<std::size_t>(next - p) : rest.size();
            out.append(p, plain);
            p += plain;
        } else if (rest.compare(0, kBase.size(), kBase) == 0) {
            out.append(with.base), p += kBase.size();
        } else if (with.target && rest.compare(0, kTarget.size(), kTarget) == 0) {
            out.append(*with.target), p += kTarget.size();
        } else if (with.target && rest.compare(0, kIndex.size(), kIndex) == 0) {
            out.number(with.index), p += kIndex.size();
        } else if (rest.compare(0, kCount.size(), kCount) == 0) {
            out.number(with.count), p += kCount.size();
        } else if (rest.compare(0, kLast.size(), kLast) == 0) {
            out.number(with.count - 1), p += kLast.size();
        } else {
            out.put(*p++);
        }
    }
    out.put('\n');
}

// "setAttr -s 2 ".w[0:1]"  0  0 ;": every weight starts at 0.
void writeWeights(TextWriter& out, const Substitutions& with) {
    out.append("setAttr -s ");
    out.number(with.count);
    out.append(" \".w[0:");
    out.number(with.count - 1);
    out.append("]\"");
    for (std::int64_t i = 0; i < with.count; ++i)
        out.append("  0");
    out.append(" ;\n");
}

// Each weight takes its target's name: {"A","weight[0]",<newline>"B","weight[1]"};
void writeAliases(TextWriter& out, const std::vector<std::string>& targetNames) {
    out.append(R"(setAttr ".aal" -type "attributeAlias" {)");
    for (std::size_t i = 0; i < targetNames.size(); ++i) {
        if (i != 0) out.append(",\n");
        out.put('"');
        out.append(targetNames[i]);
        out.append(R"(","weight[)");
        out.number(static_cast<long long>(i));
        out.append("]\"");
    }
    out.append("};\n");
}

} // namespace

void appendBlendStatements(std::string& text, const std::string& baseName,
                           const std::vector<std::string>& targetNames) {
    // The count is a 32-bit signed integer in the scene.
    const auto count = static_cast<std::int32_t>(targetNames.size());
    const Substitutions once{baseName, count, nullptr, 0};
    // Rough size: the fixed lines, then about 900 bytes and 24 names per target.
    std::size_t estimate = 4096 + 16 * baseName.size();
    for (const std::string& name : targetNames)
        estimate += 900 + 24 * name.size();
    text.reserve(text.size() + estimate);
    StringSink sink(text);
    TextWriter out(sink, TextWriter::kCachedBufferSize);
    for (std::size_t line = 0; line < kLineCount;) {
        switch (kLines[line].repeat) {
        case Repeat::once:
            writeLine(out, kLines[line++].text, once);
            break;
        case Repeat::weights:
            writeWeights(out, once);
            ++line;
            break;
        case Repeat::aliases:
            writeAliases(out, targetNames);
            ++line;
            break;
        case Repeat::perTarget: {
            std::size_t groupEnd = line;
            while (groupEnd < kLineCount && kLines[groupEnd].repeat == Repeat::perTarget)
                ++groupEnd;
            for (std::size_t i = 0; i < targetNames.size(); ++i) {
                const Substitutions perTarget{baseName, count, &targetNames[i],
                                              static_cast<std::int64_t>(i)};
                for (std::size_t member = line; member < groupEnd; ++member)
                    writeLine(out, kLines[member].text, perTarget);
            }
            line = groupEnd;
            break;
        }
        }
    }
    out.flush();
}

} // namespace neq::blend
