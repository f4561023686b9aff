// The list's design-time properties: defaults, what is announced, what is kept of them and read again.
#include "tests/unit/shell/cool_list_box_fixture.h"

namespace murmelix {
namespace {

class CoolListBoxProperties : public CoolListBoxTest {
  protected:
    // What reading a bag with this one value makes of it.
    template <class Property>
    auto read(const std::u16string& name, const PropertyValue& value, Property property) {
        PropertyBag bag;
        bag.WriteProperty(name, value, std::u16string(u"(never this)"));
        CoolListBox fresh(form);
        fresh.ReadProperties(bag);
        return (fresh.*property)();
    }
    static void expectDefaults(const CoolListBox& fresh) {
        EXPECT_EQ(fresh.Appearance(), 1);
        EXPECT_EQ(fresh.BackColor(), 0x80000005u);
        EXPECT_EQ(fresh.DragDropZone(), 0);
        EXPECT_EQ(fresh.NoItemCaption(), u"No Items in List");
        EXPECT_EQ(fresh.ItemHeight(), 15);
        EXPECT_EQ(fresh.IconPosX(), 0);
        EXPECT_EQ(fresh.IconPosY(), 0);
        EXPECT_EQ(fresh.CaptionPosX(), 0);
        EXPECT_EQ(fresh.CaptionPosY(), 0);
        EXPECT_EQ(fresh.TextPosX(), 1);
        EXPECT_EQ(fresh.TextPosY(), 1);
        EXPECT_EQ(fresh.Selected(), 0);
    }
    static PropertyValue number(std::int64_t value) { return value; }
};

TEST_F(CoolListBoxProperties, NewControlHasTheDefaultsAndIsEnabledAsItsSurfaceIs) {
    const CoolListBox fresh(form);
    expectDefaults(fresh);
    EXPECT_TRUE(fresh.EnabledIt());
    EXPECT_FALSE(fresh.SuppressKeyboard);
    EXPECT_EQ(fresh.P.OLEDropMode(), ui::DropMode::none);
}

TEST_F(CoolListBoxProperties, MissingValuesReadAsTheDefaults) {
    CoolListBox fresh(form);
    fresh.ReadProperties(PropertyBag());
    expectDefaults(fresh);
    EXPECT_FALSE(fresh.EnabledIt());
}

TEST_F(CoolListBoxProperties, ReadingDefaultsReplacesWhatWasSet) {
    fill(3);
    list.setSelected(2);
    list.SetPos(1, 2, 3, 4, 5, 6);
    list.setBackColor(0xFFFFFF);
    list.setNoItemCaption(u"x");
    list.setAppearance(0);
    list.setDragDropZone(1);
    list.ReadProperties(PropertyBag());
    expectDefaults(list);
}

TEST_F(CoolListBoxProperties, ValuesThatEqualTheirDefaultsAreNotWritten) {
    CoolListBox fresh(form);
    fresh.setEnabledIt(false);
    PropertyBag bag;
    fresh.WriteProperties(bag);
    EXPECT_EQ(bag.Count(), 0u);
    fresh.setEnabledIt(true);
    fresh.WriteProperties(bag);
    EXPECT_EQ(bag.Count(), 1u);
    EXPECT_TRUE(bag.ReadProperty(u"EnabledIt", false));
    fresh.setEnabledIt(false);
    fresh.WriteProperties(bag);
    EXPECT_EQ(bag.Count(), 0u) << "nor is an earlier value kept";
}

TEST_F(CoolListBoxProperties, AllAreWrittenUnderTheirNamesAndReadAgain) {
    CoolListBox written(form);
    written.AddItem(u"c", u"t", u"k", true);
    written.setEnabledIt(true);
    written.setAppearance(0);
    written.setBackColor(0x123456);
    written.setDragDropZone(-1);
    written.setNoItemCaption(u"nothing[ENTER]here");
    written.setItemHeight(40);
    written.SetPos(1, 2, 3, 4, 5, -6);
    PropertyBag bag;
    written.WriteProperties(bag);
    for (const char16_t* name :
         {u"EnabledIt", u"Appearance", u"BackColor", u"DragDropZone", u"NoItemCaption", u"ItemHeight", u"IconPosX",
          u"IconPosY", u"CaptionPosX", u"CaptionPosY", u"TextPosX", u"TextPosY", u"Selected"}) {
        EXPECT_TRUE(bag.contains(name)) << toUtf8(name);
    }
    EXPECT_EQ(bag.Count(), 13u);

    CoolListBox fresh(form);
    fresh.ReadProperties(bag);
    EXPECT_TRUE(fresh.EnabledIt());
    EXPECT_EQ(fresh.Appearance(), 0);
    EXPECT_EQ(fresh.BackColor(), 0x123456u);
    EXPECT_EQ(fresh.DragDropZone(), -1);
    EXPECT_EQ(fresh.NoItemCaption(), u"nothing[ENTER]here");
    EXPECT_EQ(fresh.ItemHeight(), 40);
    EXPECT_EQ(fresh.CaptionPosX(), 1);
    EXPECT_EQ(fresh.CaptionPosY(), 2);
    EXPECT_EQ(fresh.TextPosX(), 3);
    EXPECT_EQ(fresh.TextPosY(), 4);
    EXPECT_EQ(fresh.IconPosX(), 5);
    EXPECT_EQ(fresh.IconPosY(), -6);
    EXPECT_EQ(fresh.Selected(), 1);
    EXPECT_EQ(fresh.GetSelectedKey(), u"") << "rows are not kept";
}

TEST_F(CoolListBoxProperties, ReadingRaisesNothingAndAnnouncesNothing) {
    fill(3);
    PropertyBag bag;
    bag.WriteProperty(u"Selected", number(2), number(0));
    list.ReadProperties(bag);
    EXPECT_EQ(list.GetSelectedKey(), u"k2");
    EXPECT_EQ(events, "");
}

TEST_F(CoolListBoxProperties, ReadPropertiesAreSeenAtOnce) {
    fill(6);
    PropertyBag bag;
    bag.WriteProperty(u"EnabledIt", true, false);
    bag.WriteProperty(u"ItemHeight", number(40), number(15));
    bag.WriteProperty(u"TextPosY", number(9), number(1));
    list.ReadProperties(bag);
    EXPECT_TRUE(list.Scroll.Visible());
    EXPECT_EQ(drawings()[0].area.height, 40);
    EXPECT_EQ(drawings()[2].area.top, 9);
}

TEST_F(CoolListBoxProperties, ValuesOfTheWrongTypeReadAsTheDefaults) {
    EXPECT_EQ(read(u"ItemHeight", u"40", &CoolListBox::ItemHeight), 15);
    EXPECT_EQ(read(u"ItemHeight", true, &CoolListBox::ItemHeight), 15);
    EXPECT_EQ(read(u"NoItemCaption", number(7), &CoolListBox::NoItemCaption), u"No Items in List");
    EXPECT_FALSE(read(u"EnabledIt", number(1), &CoolListBox::EnabledIt));
    EXPECT_EQ(read(u"BackColor", u"&HFFFFFF", &CoolListBox::BackColor), 0x80000005u);
}

TEST_F(CoolListBoxProperties, NumbersOutOfRangeReadAsTheDefaults) {
    for (const std::int64_t height : std::initializer_list<std::int64_t>{0, -1, 32768, INT64_MAX, INT64_MIN}) {
        EXPECT_EQ(read(u"ItemHeight", number(height), &CoolListBox::ItemHeight), 15) << height;
    }
    for (const std::int64_t appearance : {-1, 2, 65537}) {
        EXPECT_EQ(read(u"Appearance", number(appearance), &CoolListBox::Appearance), 1) << appearance;
    }
    for (const std::int64_t colour : std::initializer_list<std::int64_t>{-1, 0x100000000}) {
        EXPECT_EQ(read(u"BackColor", number(colour), &CoolListBox::BackColor), 0x80000005u) << colour;
    }
    for (const std::int64_t zone : {32768, -32769}) {
        EXPECT_EQ(read(u"DragDropZone", number(zone), &CoolListBox::DragDropZone), 0) << zone;
    }
    for (const std::int64_t x : {std::int64_t{0x80000000}, -std::int64_t{0x80000001}}) {
        EXPECT_EQ(read(u"TextPosX", number(x), &CoolListBox::TextPosX), 1) << x;
    }
    for (const std::int64_t position : {-1, 32768}) {
        EXPECT_EQ(read(u"Selected", number(position), &CoolListBox::Selected), 0) << position;
    }
}

TEST_F(CoolListBoxProperties, NumbersAtTheEndsOfTheirRangesAreRead) {
    EXPECT_EQ(read(u"ItemHeight", number(32767), &CoolListBox::ItemHeight), 32767);
    EXPECT_EQ(read(u"ItemHeight", number(1), &CoolListBox::ItemHeight), 1);
    EXPECT_EQ(read(u"BackColor", number(0xFFFFFFFF), &CoolListBox::BackColor), 0xFFFFFFFFu);
    EXPECT_EQ(read(u"IconPosY", number(-0x80000000LL), &CoolListBox::IconPosY), -0x7FFFFFFF - 1);
    EXPECT_EQ(read(u"Selected", number(32767), &CoolListBox::Selected), 32767);
}

TEST_F(CoolListBoxProperties, EveryPropertyIsAnnouncedUnderItsName) {
    list.setEnabledIt(true);
    list.setAppearance(0);
    list.setBackColor(0);
    list.setNoItemCaption(u"x");
    list.setItemHeight(30);
    list.setIconPosX(1);
    list.setIconPosY(2);
    list.setCaptionPosX(3);
    list.setCaptionPosY(4);
    list.setTextPosX(5);
    list.setTextPosY(6);
    EXPECT_EQ(events, "EnabledIt Appearance BackColor NoItemCaption ItemHeight IconPosX IconPosY CaptionPosX "
                      "CaptionPosY TextPosX TextPosY ");
    EXPECT_EQ(list.IconPosX(), 1);
    EXPECT_EQ(list.IconPosY(), 2);
    EXPECT_EQ(list.CaptionPosX(), 3);
    EXPECT_EQ(list.CaptionPosY(), 4);
    EXPECT_EQ(list.TextPosX(), 5);
    EXPECT_EQ(list.TextPosY(), 6);
}

TEST_F(CoolListBoxProperties, DragDropZoneIsAnnouncedAsOleDropMode) {
    list.setDragDropZone(1);
    EXPECT_EQ(list.DragDropZone(), 1);
    EXPECT_EQ(events, "OLEDropMode ");
    EXPECT_EQ(list.P.OLEDropMode(), ui::DropMode::none) << "whether drops are taken is the owner's affair";
}

TEST_F(CoolListBoxProperties, SelectionIsAnnouncedWhereItChangesAlone) {
    fill(2);
    list.setSelected(1);
    list.setSelected(1);
    list.setSelected(9);
    EXPECT_EQ(events, "select Selected ");
}

TEST_F(CoolListBoxProperties, NobodyNeedsToListen) {
    fill(2);
    list.PropertyChanged = nullptr;
    list.OnSelect = nullptr;
    list.setSelected(2);
    list.setDragDropZone(1);
    EXPECT_EQ(list.Selected(), 2);
}

TEST_F(CoolListBoxProperties, SettingEnabledItRedrawsEvenToTheSameValue) {
    fill(1);
    const int before = refreshes();
    list.setEnabledIt(true);
    EXPECT_EQ(refreshes(), before + 1);
    list.setEnabledIt(false);
    EXPECT_EQ(drawings()[1].colour, 0x80000011u);
}

TEST_F(CoolListBoxProperties, BackColorFillsTheSurfaceAndTheRows) {
    fill(1);
    list.setBackColor(0x00C0FFEE);
    EXPECT_EQ(fakes::background(list.P.surface()), 0x00C0FFEEu);
    EXPECT_EQ(drawings()[0].colour, 0x00C0FFEEu);
}

TEST_F(CoolListBoxProperties, OffsetsMoveWhatIsDrawn) {
    list.AddItem(u"c", u"t", u"k", false, {u"picture", 16});
    list.setCaptionPosX(11);
    list.setCaptionPosY(2);
    list.setTextPosX(13);
    list.setTextPosY(4);
    list.setIconPosX(15);
    list.setIconPosY(-6);
    EXPECT_EQ(drawings()[1].area, (ui::Rect{11, 2, 0, 0}));
    EXPECT_EQ(drawings()[2].area, (ui::Rect{13, 4, 0, 0}));
    EXPECT_EQ(drawings()[3].area, (ui::Rect{15, -6, 0, 0}));
}

TEST_F(CoolListBoxProperties, ItemHeightMovesTheScrollBarsEnd) {
    fill(5);
    list.setItemHeight(25);
    EXPECT_EQ(list.Scroll.Max(), 1);
    list.setItemHeight(20);
    EXPECT_FALSE(list.Scroll.Visible());
}

} // namespace
} // namespace murmelix
