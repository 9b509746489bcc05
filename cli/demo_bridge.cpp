#include "cmd_app.h"
#include "command.h"
#include "demo_steps.h"

#include "foundation/vd_config_parser.h"

namespace neq::cli {
namespace {

// A target application's description as the bridge's installers write them.
const char kDescription[] = "NAME \"Sample Modeller\"\n"
                            "NEQ_VERSION 2\n"
                            "EXTENSION .obj\n"
                            "TAMPLATE \"template.ma\"\n"
                            "EDIT_COMMAND open -a \"Sample Modeller\"\n"
                            "IMPORT_FLIP_Y True\n"
                            "EXPORT_SWITCH_YZ yes\n"
                            "NORMAL_MAP_FLIP_XY 1\n"
                            "IMPORT_POLYGROUPS No\n";

const char kConfig[] = "# installed location\nOTHER = kept\n";

std::string joined(const std::vector<std::string>& items) {
    std::string text;
    for (const std::string& item : items)
        text += (text.empty() ? "" : " ") + item;
    return text;
}

} // namespace

void demoBridgeSteps(DemoContext& context) {
    status("\n-- Bridge configuration");
    const std::string description = context.dir + "NeQ_App.txt";
    writeDemoFile(description, kDescription);
    VDNeQApp app;
    readAppDescription(description, app);
    statusf("  read the application description NeQ_App.txt: name \"%s\", extension %s, "
            "template %s, edit command '%s', version %d",
            app.m_name.c_str(), app.m_extension.c_str(), app.m_template.c_str(),
            app.m_editCommand.c_str(), app.m_version);
    statusf("    flags 0x%08x: %s", app.m_flags, joined(setFlagKeys(app)).c_str());
    status("    again: neqbridge app NeQ_App.txt");

    const std::string config = context.dir + "NeQ_Config.txt";
    writeDemoFile(config, kConfig);
    const VDString configPath(config.c_str());
    const VDString key("path");
    if (!VDGenericConfigFileParser::replaceTokenInConfigFile(
            configPath, key, VDString("\"/Applications/Sample Modeller.app\""), nullptr))
        throw Failure("cannot write " + quoted(config));
    bool found = false;
    const VDString value =
        VDGenericConfigFileParser::findTokenInConfigFile(configPath, key, &found);
    if (!found) throw Failure("no PATH entry read back from " + quoted(config));
    statusf("  recorded PATH in the configuration file NeQ_Config.txt and read it back: %s",
            value.c_str());
    status("    again: neqbridge config get NeQ_Config.txt PATH");
}

} // namespace neq::cli
