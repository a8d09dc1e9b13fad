// The interface file as a document, against the outlets and actions that the class headers declare: the
// toolkit on Linux turns a wrong reference into a dangling pointer, so it is not loaded for this.
#include "support/Sandbox.h"

#include <gtest/gtest.h>
#include <map>
#include <pugixml.hpp>
#include <regex>
#include <set>

namespace {

namespace fs = std::filesystem;
const std::string kSuffix = "_5C1E9A20_6B4D_4F3A_9E21_3D7B8C0F4A16";

/// What a header declares of a class.
struct Declared {
    std::map<std::string, std::string> outlets; ///< type by name
    std::set<std::string> actions;              ///< with the colon
};

std::map<std::string, Declared> declarations()
{
    std::map<std::string, Declared> classes;
    const std::regex line("@interface (\\w+)|IBOutlet (\\w+)\\* (\\w+);|\\(IBAction\\)(\\w+:)");
    for (const auto& file : fs::recursive_directory_iterator(PDE_SOURCE_DIR "/PDE_COL/Source")) {
        if (file.path().extension() != ".h")
            continue;
        std::string text = readFile(file.path()), name;
        for (std::sregex_iterator m(text.begin(), text.end(), line), end; m != end; ++m) {
            if ((*m)[1].matched)
                name = (*m)[1];
            else if ((*m)[2].matched)
                classes[name].outlets[(*m)[3]] = (*m)[2];
            else
                classes[name].actions.insert((*m)[4]);
        }
    }
    return classes;
}

class InterfaceFile : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(document_.load_file(PDE_SOURCE_DIR "/PDE_COL/Resources/PDEMain.xib"));
    }
    pugi::xml_node node(const std::string& id) const
    {
        return document_.select_node(("//*[@id='" + id + "']").c_str()).node();
    }
    bool none(const char* query) const { return document_.select_nodes(query).empty(); }
    /// Our class of an object, without the suffix.
    static std::string classOf(pugi::xml_node object)
    {
        std::string name = object.attribute("customClass").value();
        return name.ends_with(kSuffix) ? name.substr(0, name.size() - kSuffix.size()) : name;
    }
    /// Whether the toolkit makes such an object of the element.
    static bool isA(pugi::xml_node object, const std::string& type)
    {
        if (classOf(object) == type)
            return true;
        std::string element = object.name();
        if (!element.empty())
            element[0] = static_cast<char>(toupper(element[0]));
        return "NS" + element == type || (type == "NSView" && element == "CustomView");
    }
    static std::string idOf(pugi::xml_node n) { return n.attribute("id").value(); }

    pugi::xml_document document_;
};

} // namespace

TEST_F(InterfaceFile, NamesEachObjectOnceAndRefersOnlyToObjectsThatExist)
{
    std::set<std::string> ids;
    for (const auto& found : document_.select_nodes("//*[@id]"))
        EXPECT_TRUE(ids.insert(idOf(found.node())).second) << idOf(found.node());
    for (const auto& found :
         document_.select_nodes("//@destination | //@target | //@initialItem | //@headerView"))
        EXPECT_TRUE(ids.contains(found.attribute().value())) << found.attribute().value();
    for (const auto& found : document_.select_nodes("//*[@customClass]")) {
        std::string name = found.node().attribute("customClass").value();
        EXPECT_TRUE(name.ends_with(kSuffix) || name == "FirstResponder" || name == "NSObject") << name;
    }
}

TEST_F(InterfaceFile, ConnectsEveryDeclaredOutletToItsObjectAndSendsOnlyDeclaredActions)
{
    auto classes = declarations();
    const std::set<std::string> unused = {"painShareInterface", "operateOutlet"};
    for (const auto& found : document_.select_nodes("//*[@customClass]")) {
        pugi::xml_node object = found.node();
        for (const auto& [name, type] : classes[classOf(object)].outlets) {
            std::string query = "connections/outlet[@property='" + name + "']/@destination";
            std::string to = object.select_node(query.c_str()).attribute().value();
            if (unused.contains(name))
                continue;
            EXPECT_TRUE(isA(node(to), type))
                << idOf(object) << " " << name << " is " << to << ", no " << type;
            // A control has its outlet's name for an identifier, so that no two can be mixed up.
            EXPECT_TRUE(to == name || !type.starts_with("NS") || type == "NSView") << name << " is " << to;
        }
    }
    std::set<std::string> sent;
    for (const auto& found : document_.select_nodes("//action")) {
        std::string selector = found.node().attribute("selector").value();
        std::string target = classOf(node(found.node().attribute("target").value()));
        EXPECT_TRUE(classes[target].actions.contains(selector)) << selector << " of " << target;
        sent.insert(selector);
    }
    for (const auto& [name, declared] : classes)
        for (const std::string& action : declared.actions)
            EXPECT_TRUE(sent.contains(action)) << "nobody sends " << action;
    EXPECT_TRUE(none("//button[count(connections/action)!=1]")) << "a button does one thing";
}

TEST_F(InterfaceFile, PutsEachLabelInFrontOfItsOwnPopUp)
{
    bool labelled = false;
    for (const auto& found : document_.select_nodes("//popUpButton[starts-with(@id,'menu_')]")) {
        pugi::xml_node menu = found.node();
        std::string of =
            menu.select_node("connections/accessibilityConnection/@destination").attribute().value();
        pugi::xml_node label = node(of);
        EXPECT_EQ(menu.parent(), label.parent()) << idOf(menu);
        EXPECT_NEAR(menu.child("rect").attribute("y").as_int(), label.child("rect").attribute("y").as_int(),
                    6);
        EXPECT_LT(label.child("rect").attribute("x").as_int(), menu.child("rect").attribute("x").as_int());
        std::string tab = menu.parent().parent().parent().attribute("label").value();
        if (!tab.empty())
            EXPECT_EQ(idOf(menu)[5], static_cast<char>(tolower(tab[0]))) << idOf(menu) << " on " << tab;
        labelled = true;
    }
    EXPECT_TRUE(labelled);
    // Tabs speak for themselves, and the table is given its name with the other texts.
    for (const auto& found : document_.select_nodes("//popUpButton | //button")) {
        pugi::xml_node control = found.node();
        bool titled = *control.child("buttonCell").attribute("title").value() != '\0';
        EXPECT_TRUE(titled || control.select_node("connections/accessibilityConnection"))
            << "no spoken name: " << idOf(control);
    }
}

TEST_F(InterfaceFile, LeadsTheKeyboardThroughEveryControlAndKeepsClearOfToolkitDifferences)
{
    std::set<std::string> reached;
    for (const auto& found : document_.select_nodes("//outlet[@property='nextKeyView']/@destination"))
        reached.insert(found.attribute().value());
    for (const auto& found : document_.select_nodes(
             "//popUpButton | //button | //tabView | //tableView | //textField[@customClass]")) {
        pugi::xml_node control = found.node();
        EXPECT_TRUE(control.select_node("connections/outlet[@property='nextKeyView']"))
            << "the keyboard stops at " << idOf(control);
        EXPECT_TRUE(reached.contains(idOf(control))) << "the keyboard never comes to " << idOf(control);
    }
    for (const char* wrong :
         {"//popUpButtonCell/menu//menuItem", "//popUpButtonCell[not(@bezelStyle) or @bezelStyle='rounded']",
          "//color[not(@catalog='System')]", "//textFieldCell[not(color[@key='textColor'])]",
          "//accessibility", "//font[not(@metaFont='system') or not(@size='12')]",
          "//textFieldCell[not(@editable)]", "//tabView[not(@initialItem)]",
          "//tableView[not(@multipleSelection='NO')]", "//string[not(@base64-UTF8)]",
          "//window[not(@releasedWhenClosed='NO') or not(@visibleAtLaunch='NO')]",
          "//textField[@customClass]/textFieldCell[@editable='NO']",
          "//textField[not(@customClass)]/textFieldCell[@editable='YES']"})
        EXPECT_TRUE(none(wrong)) << wrong;
}
