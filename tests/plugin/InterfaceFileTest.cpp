// The interface file as a document, against the outlets and actions that the class headers declare: the
// toolkit on Linux turns a wrong reference into a dangling pointer, so it is not loaded for this.
#include "support/Sandbox.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <pugixml.hpp>
#include <regex>
#include <set>

namespace {

using Names = std::set<std::string>;

/// The outlets and the actions, with their colon, that the headers declare, behind their class.
Names declared()
{
    Names names;
    const std::regex line(R"(@interface (\w+)|IBOutlet \w+\* (\w+);|\(IBAction\)(\w+:))");
    for (const auto& file : std::filesystem::recursive_directory_iterator(PDE_SOURCE_DIR "/PDE_COL/Source")) {
        if (file.path().extension() != ".h")
            continue;
        std::string text = readFile(file.path()), name;
        for (std::sregex_iterator m(text.begin(), text.end(), line), end; m != end; ++m) {
            if ((*m)[1].matched)
                name = (*m)[1];
            else
                names.insert(name + "." + (*m)[2].str() + (*m)[3].str());
        }
    }
    return names;
}

class InterfaceFile : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(document_.load_file(PDE_SOURCE_DIR "/PDE_COL/Resources/PDEMain.xib"));
    }
    pugi::xpath_node_set all(const char* query) const { return document_.select_nodes(query); }
    static std::string idOf(pugi::xml_node n) { return n.attribute("id").value(); }
    /// Our class of an object, without the suffix, in front of a name.
    static std::string inClass(pugi::xml_node object, pugi::xml_attribute name)
    {
        std::string type = object.attribute("customClass").value();
        return type.substr(0, type.find("_5C1E9A20")) + "." + name.value();
    }

    pugi::xml_document document_;
};

} // namespace

TEST_F(InterfaceFile, ConnectsEveryDeclaredOutletAndSendsEveryDeclaredAction)
{
    Names connected, odd;
    for (const auto& found : all("//*[@customClass]/connections/outlet[@property!='nextKeyView']"))
        connected.insert(inClass(found.node().parent().parent(), found.node().attribute("property")));
    for (const auto& found : all("//action")) {
        std::string to = std::string("//*[@id='") + found.node().attribute("target").value() + "']";
        connected.insert(
            inClass(document_.select_node(to.c_str()).node(), found.node().attribute("selector")));
    }
    std::ranges::set_symmetric_difference(connected, declared(), std::inserter(odd, odd.end()));
    // Two that are set elsewhere or not used, and two that the toolkit declares.
    EXPECT_EQ(odd, (Names{"PDEPlugInInterface.painShareInterface", "VelTextField.operateOutlet",
                          "ProfileTableView.dataSource", "ProfileTableView.delegate"}));
}

TEST_F(InterfaceFile, PutsEachLabelInFrontOfItsOwnPopUp)
{
    for (const auto& found : all("//popUpButton[starts-with(@id,'menu_')]")) {
        pugi::xml_node menu = found.node(), rect = menu.child("rect");
        auto of = menu.select_node("connections/accessibilityConnection/@destination").attribute().value();
        auto before = menu.parent().find_child_by_attribute("textField", "id", of).child("rect");
        EXPECT_NEAR(rect.attribute("y").as_int(), before.attribute("y").as_int(-99), 6) << idOf(menu);
        EXPECT_LT(before.attribute("x").as_int(), rect.attribute("x").as_int()) << idOf(menu);
        std::string tab = menu.parent().parent().parent().attribute("label").value();
        if (!tab.empty())
            EXPECT_EQ(idOf(menu)[5], static_cast<char>(tolower(tab[0]))) << idOf(menu) << " on " << tab;
    }
}

TEST_F(InterfaceFile, HasNoDanglingReferenceNoStopForTheKeyboardAndNothingThatToolkitsTakeDifferently)
{
    for (const char* wrong :
         {"//*[@id=preceding::*/@id or @id=ancestor::*/@id]", "//*[@destination and not(@destination=//@id)]",
          "//*[@target and not(@target=//@id)]", "//*[@initialItem and not(@initialItem=//@id)]",
          "//*[@headerView and not(@headerView=//@id)]",
          "//*[@customClass!='FirstResponder' and @customClass!='NSObject' and "
          "substring-after(@customClass,'_')!='5C1E9A20_6B4D_4F3A_9E21_3D7B8C0F4A16']",
          // A control has its outlet's name for an identifier, so that no two can be mixed up.
          "//*[@customClass]/connections/outlet[@property!='nextKeyView' and @property!=@destination and not("
          "contains('AdvancedColorOptions MainView PainChangeController ProfileControl', @destination))]",
          "//button[count(connections/action)!=1]",
          // No spoken name. Tabs speak for themselves, and the table is given its name with the other texts.
          "(//popUpButton | //button[buttonCell/@title=''])[not(connections/accessibilityConnection)]",
          "(//popUpButton | //button | //tabView | //tableView | //textField[@customClass])"
          "[not(connections/outlet/@property='nextKeyView') or "
          "not(@id=//outlet[@property='nextKeyView']/@destination)]",
          "//popUpButtonCell/menu//menuItem", "//popUpButtonCell[not(@bezelStyle) or @bezelStyle='rounded']",
          "//color[not(@catalog='System')]", "//textFieldCell[not(color[@key='textColor'])]",
          "//accessibility", "//font[not(@metaFont='system') or not(@size='12')]",
          "//textFieldCell[not(@editable)]", "//tabView[not(@initialItem)]",
          "//tableView[not(@multipleSelection='NO')]", "//string[not(@base64-UTF8)]",
          "//window[not(@releasedWhenClosed='NO') or not(@visibleAtLaunch='NO')]",
          "//textField[@customClass]/textFieldCell[@editable='NO']",
          "//textField[not(@customClass)]/textFieldCell[@editable='YES']"})
        for (const auto& found : all(wrong))
            ADD_FAILURE() << idOf(found.node()) << " is one of " << wrong;
}
