// The interface file as a document: the toolkit on Linux turns a wrong reference into a dangling pointer and
// an unknown element into a panel that does not load, so every connection is checked without loading it.
#include <gtest/gtest.h>
#include <map>
#include <pugixml.hpp>
#include <set>
#include <string>
#include <vector>

namespace {

const std::string kSuffix = "_5C1E9A20_6B4D_4F3A_9E21_3D7B8C0F4A16";
const std::string kFilesOwner = "-2";

struct Connection {
    std::string kind, from, name, to; ///< name: an outlet or a selector
};

class InterfaceFile : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(document_.load_file(PDE_SOURCE_DIR "/PDE_COL/Resources/PDEMain.xib"));
        for (const auto& found : document_.select_nodes("//*[@id]"))
            ++uses_[found.node().attribute("id").value()];
        for (const auto& found : document_.select_nodes("//connections/*")) {
            pugi::xml_node node = found.node();
            connections_.push_back({node.name(), idOf(node.parent().parent()),
                                    node.attribute(isAction(node) ? "selector" : "property").value(),
                                    node.attribute(isAction(node) ? "target" : "destination").value()});
        }
    }
    pugi::xml_node node(const std::string& id) const
    {
        return document_.select_node(("//*[@id='" + id + "']").c_str()).node();
    }
    /// The object of one of our classes, by the class's short name.
    std::string object(const std::string& shortName) const
    {
        std::string query = "//objects/*[@customClass='" + shortName + kSuffix + "']";
        return idOf(document_.select_node(query.c_str()).node());
    }
    std::string outlet(const std::string& from, const std::string& name) const
    {
        for (const Connection& c : connections_)
            if (c.kind == "outlet" && c.from == from && c.name == name)
                return c.to;
        return "";
    }
    /// What the control sends, as "selector>target"; "" when it sends nothing.
    std::string action(const std::string& control) const
    {
        std::string result;
        for (const Connection& c : connections_)
            if (c.kind == "action" && c.from == control)
                result += c.name + ">" + c.to;
        return result;
    }
    void expectOutlets(const std::string& owner, const std::vector<std::string>& names,
                       const std::string& element, const std::string& type = "") const
    {
        for (const std::string& name : names) {
            pugi::xml_node control = node(outlet(owner, name));
            EXPECT_EQ(element, control.name()) << owner << "." << name;
            if (!type.empty())
                EXPECT_EQ(type, control.child((element + "Cell").c_str()).attribute("type").value()) << name;
        }
    }
    static std::string idOf(pugi::xml_node n) { return n.attribute("id").value(); }
    static bool isAction(pugi::xml_node n) { return std::string(n.name()) == "action"; }

    pugi::xml_document document_;
    std::map<std::string, int> uses_;
    std::vector<Connection> connections_;
};

/// "menu_" or "text_" before the settings of each tab.
std::vector<std::string> advanced(const std::string& prefix)
{
    std::vector<std::string> names;
    for (const char* tab : {"i", "t", "g"})
        for (const char* setting : {"RGBSource", "RGBIntent", "RGBGrayTreatment", "DestinationProfile",
                                    "Halftone", "EdgeEnhancement"})
            names.push_back(prefix + tab + setting);
    for (const char* setting : {"SimulationProfile", "MatchPaperColor", "CMYKGrayTreatment"})
        names.push_back(prefix + "s" + setting);
    return names;
}

TEST_F(InterfaceFile, NamesEachObjectOnceAndRefersOnlyToObjectsThatExist)
{
    for (const auto& [id, uses] : uses_)
        EXPECT_EQ(1, uses) << id;
    for (const Connection& c : connections_)
        EXPECT_TRUE(uses_.contains(c.to)) << c.from << " " << c.name;
    for (const char* reference : {"initialItem", "headerView"})
        for (const auto& found : document_.select_nodes((std::string("//*[@") + reference + "]").c_str()))
            EXPECT_TRUE(uses_.contains(found.node().attribute(reference).value())) << reference;
}

TEST_F(InterfaceFile, GivesEveryClassTheSuffixThatKeepsItApart)
{
    std::set<std::string> classes;
    for (const auto& found : document_.select_nodes("//*[@customClass]"))
        classes.insert(found.node().attribute("customClass").value());
    std::set<std::string> expected{"FirstResponder", "NSObject"};
    for (const char* name : {"PDEPlugInInterface", "MainView", "ColorOptions", "AdvancedColorOptions",
                             "PainChangeController", "ProfileControl", "VelTextField", "IconedCell"})
        expected.insert(name + kSuffix);
    EXPECT_EQ(expected, classes);
}

TEST_F(InterfaceFile, ConnectsEveryOutletToTheRightKindOfObject)
{
    std::string color = object("ColorOptions"), details = object("AdvancedColorOptions");
    std::string switcher = object("PainChangeController"), profiles = object("ProfileControl");
    for (const std::string& owner : {kFilesOwner, switcher}) {
        EXPECT_EQ(color, outlet(owner, "onColorView"));
        EXPECT_EQ(details, outlet(owner, "onAdvancedView"));
    }
    EXPECT_EQ(details, outlet(profiles, "onAdvancedView"));
    EXPECT_EQ(switcher, outlet(kFilesOwner, "painChange"));
    EXPECT_EQ(profiles, outlet(kFilesOwner, "profileControl"));
    EXPECT_EQ(object("MainView"), outlet(kFilesOwner, "pdeMainView"));
    EXPECT_EQ(object("MainView"), idOf(node(outlet(switcher, "onMainCustomView")).parent().parent()));

    expectOutlets(color, {"menu_QuickColor", "menu_Brightness", "menu_EdgeStrength"}, "popUpButton");
    expectOutlets(color, {"check_ColorAsGrayscale", "check_EconomyPrint"}, "button", "check");
    expectOutlets(color, {"text_QuickColor", "text_Brightness", "text_Strength"}, "textField");
    expectOutlets(color, {"button_AdvanceColorOptions"}, "button", "push");
    expectOutlets(details, advanced("menu_"), "popUpButton");
    expectOutlets(details, advanced("text_"), "textField");
    expectOutlets(details, {"tab_SwitchVew"}, "tabView");
    expectOutlets(details, {"button_ManageProfile", "button_DownloadManager", "button_HideAdvancedOptions"},
                  "button", "push");
    expectOutlets(profiles, {"_profileManagementWindow"}, "window");
    expectOutlets(profiles, {"_profileTableView"}, "tableView");
    expectOutlets(profiles, {"_editGroupBox"}, "box");
    expectOutlets(profiles, {"_profileMenu", "_locationMenu"}, "popUpButton");
    expectOutlets(profiles, {"_fileNameText", "_profileNameText", "_locationText"}, "textField");
    expectOutlets(profiles,
                  {"_addButton", "_browse", "_deleteButton", "_editButton", "_localCancel", "_localOK"},
                  "button", "push");
    for (const char* field : {"_fileNameEdit", "_profileNameEdit"})
        EXPECT_EQ("VelTextField" + kSuffix, node(outlet(profiles, field)).attribute("customClass").value());
    for (const char* role : {"dataSource", "delegate"})
        EXPECT_EQ(profiles, outlet(outlet(profiles, "_profileTableView"), role));
}

TEST_F(InterfaceFile, PutsEachLabelInFrontOfItsOwnPopUpOnTheRightTab)
{
    std::string details = object("AdvancedColorOptions");
    std::map<char, std::string> tabs{{'i', "Image"}, {'t', "Text"}, {'g', "Graphics"}, {'s', "Simulation"}};
    std::set<std::string> used;
    for (const std::string& name : advanced("")) {
        pugi::xml_node menu = node(outlet(details, "menu_" + name)),
                       label = node(outlet(details, "text_" + name));
        EXPECT_EQ(menu.parent(), label.parent()) << name;
        pugi::xml_node tab = menu.parent().parent().parent();
        EXPECT_EQ(tabs[name[0]], tab.attribute("label").value()) << name;
        pugi::xml_attribute menuY = menu.child("rect").attribute("y"),
                            labelY = label.child("rect").attribute("y");
        EXPECT_NEAR(menuY.as_int(), labelY.as_int(), 6) << name;
        EXPECT_STREQ("right", label.child("textFieldCell").attribute("alignment").value()) << name;
        EXPECT_EQ(idOf(label),
                  menu.select_node("connections/accessibilityConnection/@destination").attribute().value());
        used.insert(idOf(menu));
    }
    EXPECT_EQ(21u, used.size());
}

TEST_F(InterfaceFile, SendsTheActionsThatThePanelAnswersAndNoOthers)
{
    std::string color = object("ColorOptions"), details = object("AdvancedColorOptions");
    std::string switcher = object("PainChangeController"), profiles = object("ProfileControl");
    std::string rules = "constraints:>" + kFilesOwner;
    std::map<std::string, std::string> expected;
    expected[outlet(color, "menu_QuickColor")] = "selectItem:>" + kFilesOwner;
    for (const char* name : {"check_ColorAsGrayscale", "check_EconomyPrint", "menu_EdgeStrength"})
        expected[outlet(color, name)] = rules;
    for (const char* name :
         {"menu_iRGBSource", "menu_tRGBSource", "menu_gRGBSource", "menu_iDestinationProfile",
          "menu_tDestinationProfile", "menu_gDestinationProfile", "menu_sSimulationProfile"})
        expected[outlet(details, name)] = rules;
    expected[outlet(color, "button_AdvanceColorOptions")] = "ColorToAdvancedView:>" + switcher;
    expected[outlet(details, "button_HideAdvancedOptions")] = "AdvancedToColorView:>" + switcher;
    expected[outlet(details, "button_ManageProfile")] = "showProfileManagementWindow:>" + profiles;
    expected[outlet(details, "button_DownloadManager")] = "downloadManagerButton:>" + details;
    for (auto [name, selector] : std::map<std::string, std::string>{{"_profileMenu", "profileMenu:"},
                                                                    {"_addButton", "addButton:"},
                                                                    {"_editButton", "editButton:"},
                                                                    {"_deleteButton", "deleteButton:"},
                                                                    {"_browse", "browseButton:"},
                                                                    {"_localOK", "profileOK:"},
                                                                    {"_fileNameEdit", "profileOK:"},
                                                                    {"_profileNameEdit", "profileOK:"},
                                                                    {"_localCancel", "profileCancel:"}})
        expected[outlet(profiles, name)] = selector + ">" + profiles;
    expected["windowOK"] = "profileWindowOK:>" + profiles;
    expected["windowCancel"] = "profileWindowCancel:>" + profiles;
    size_t sent = 0;
    for (const Connection& c : connections_)
        sent += c.kind == "action";
    EXPECT_EQ(expected.size(), sent);
    for (const auto& [control, wanted] : expected)
        EXPECT_EQ(wanted, action(control)) << control;
}

TEST_F(InterfaceFile, KeepsClearOfWhatTheToolkitsReadDifferently)
{
    EXPECT_TRUE(
        document_.select_nodes("//popUpButtonCell/menu//menuItem | //popUpButtonCell//items").empty());
    EXPECT_TRUE(document_.select_nodes("//popUpButtonCell/menu[not(@title)]").empty());
    EXPECT_TRUE(document_.select_nodes("//popUpButtonCell[@bezelStyle='rounded']").empty())
        << "on Linux the titles run into a rounded border";
    EXPECT_TRUE(document_.select_nodes("//font[not(@metaFont='system') or not(@size='12')]").empty());
    EXPECT_TRUE(document_.select_nodes("//textFieldCell[not(@editable)]").empty());
    EXPECT_TRUE(document_.select_nodes("//tabView[not(@initialItem)]").empty());
    EXPECT_TRUE(document_.select_nodes("//tableView[not(@multipleSelection='NO')]").empty());
    EXPECT_TRUE(document_.select_nodes("//string[not(@base64-UTF8)]").empty()) << "titles are attributes";
    EXPECT_TRUE(
        document_.select_nodes("//window[not(@releasedWhenClosed='NO') or not(@visibleAtLaunch='NO')]")
            .empty());
    for (const auto& found : document_.select_nodes("//textField")) {
        pugi::xml_node field = found.node();
        EXPECT_STREQ(field.attribute("customClass") ? "YES" : "NO",
                     field.child("textFieldCell").attribute("editable").value())
            << idOf(field);
    }
    for (const auto& found : document_.select_nodes("//buttonCell[@type='check']/behavior"))
        for (const char* part : {"changeContents", "doesNotDimImage", "lightByContents"})
            EXPECT_STREQ("YES", found.node().attribute(part).value()) << idOf(found.node().parent());
}

TEST_F(InterfaceFile, GivesBothViewsTheContainersSize)
{
    auto size = [this](const std::string& id) {
        pugi::xml_node frame = node(id).find_child_by_attribute("rect", "key", "frame");
        return std::pair(frame.attribute("width").as_int(), frame.attribute("height").as_int());
    };
    auto container = size(outlet(object("PainChangeController"), "onMainCustomView"));
    EXPECT_GT(container.first, 0);
    for (const char* view : {"MainView", "ColorOptions", "AdvancedColorOptions"}) {
        EXPECT_EQ(container, size(object(view))) << view;
        EXPECT_STREQ("objects", node(object(view)).parent().name()) << "a view that is swapped is freed";
    }
}

TEST_F(InterfaceFile, GivesEveryControlASpokenName)
{
    for (const auto& found : document_.select_nodes(
             "//popUpButton | //button | //tabView | //tableView | //textField[@customClass]")) {
        pugi::xml_node control = found.node();
        bool titled = *control.child("buttonCell").attribute("title").value() != '\0';
        bool described = *control.child("accessibility").attribute("description").value() != '\0';
        pugi::xml_node label = control.child("connections").child("accessibilityConnection");
        bool labelled = std::string(node(label.attribute("destination").value()).name()) == "textField";
        EXPECT_TRUE(titled || described || labelled) << idOf(control);
    }
}

TEST_F(InterfaceFile, LeadsTheKeyboardThroughTheControlsInReadingOrder)
{
    std::vector<std::vector<std::string>> orders{
        {"menu_QuickColor", "menu_Brightness", "check_ColorAsGrayscale", "check_EconomyPrint",
         "menu_EdgeStrength", "button_AdvanceColorOptions"},
        {"tab_SwitchVew", "button_ManageProfile", "button_DownloadManager", "button_HideAdvancedOptions"},
        {"_profileMenu", "_profileTableView", "_addButton", "_editButton", "_deleteButton", "_fileNameEdit",
         "_browse", "_profileNameEdit", "_locationMenu", "_localCancel", "_localOK", "windowCancel",
         "windowOK", "_profileMenu"}};
    std::vector<std::string> settings = advanced("menu_");
    for (size_t first : {0u, 6u, 12u, 18u}) {
        size_t end = first == 18 ? 21 : first + 6;
        orders.emplace_back(settings.begin() + long(first), settings.begin() + long(end));
        orders.back().push_back("button_ManageProfile");
    }
    for (const auto& order : orders)
        for (size_t i = 0; i + 1 < order.size(); ++i)
            EXPECT_EQ(order[i + 1], outlet(order[i], "nextKeyView")) << order[i];
    EXPECT_EQ("_profileTableView", outlet("_profileManagementWindow", "initialFirstResponder"));
}

} // namespace
