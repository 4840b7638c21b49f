#include <tov310/angle.h>
#include <tov310/distance.h>
#include <tov310/profile.h>
#include <tov310/unit_settings.h>

#include "support/temporary_folder.h"

#include <gtest/gtest.h>

namespace tov {
namespace {

// Every test of the shared settings begins like a program that has just started, with a profile of its own.
class UnitSettings : public testing::Test {
 protected:
    UnitSettings() {
        TovSetProfilePath(m_folder.File("Units.ini").c_str());
        CTovUnitSettingsAngle::Default().Unit(TOV_UNIT_NONE);
        CTovUnitSettingsAngleLatLon::Default().Unit(TOV_UNIT_NONE);
        CTovUnitSettingsDistance::Default().Unit(TOV_UNIT_NONE);
    }
    ~UnitSettings() override { TovSetProfilePath(""); }

    static void Store(char const* section, char const* entry, int unit) {
        ASSERT_EQ(CTovProfileEntries::WriteTovProfileInt(section, entry, unit), 1);
    }
    static int Stored(char const* section, char const* entry) {
        return static_cast<int>(CTovProfileEntries::ReadTovProfileInt(section, entry, -1));
    }

    static constexpr char const* angle = "CTovUnitSettingsAngle";
    static constexpr char const* latLon = "CTovUnitSettingsAngleLatLon";
    static constexpr char const* distance = "CTovUnitSettingsDistance";
    static constexpr char const* angleEntry = "UnitAngle Format (###)";
    static constexpr char const* angleText = "UnitAngle Format (str)";
    static constexpr char const* distanceEntry = "UnitDistance Format (###)";

 private:
    test::TemporaryFolder m_folder;
};

TEST_F(UnitSettings, AreTakenFromTheProfileByTheFirstValue) {
    Store(angle, angleEntry, 16);
    Store(latLon, angleEntry, 11);
    Store(distance, distanceEntry, 23);
    CTovValueAngle const plain;
    CTovValueAngleLat const latitude;
    CTovValueDistance const length;
    EXPECT_EQ(CTovUnitSettingsAngle::Default().Unit(), 16);
    EXPECT_EQ(CTovUnitSettingsAngleLatLon::Default().Unit(), 11);
    EXPECT_EQ(CTovUnitSettingsDistance::Default().Unit(), 23);
    Store(angle, angleEntry, 17);
    CTovValueAngle const later;
    EXPECT_EQ(CTovUnitSettingsAngle::Default().Unit(), 16);  // not read again
}

TEST_F(UnitSettings, FallBackWhereTheProfileHoldsNoUnit) {
    Store(angle, angleEntry, 21);  // a distance
    Store(distance, distanceEntry, -5);
    CTovValueAngle const plain;
    CTovValueAngleLon const longitude;
    CTovValueDistance const length;
    EXPECT_EQ(CTovUnitSettingsAngle::Default().Unit(), 12);
    EXPECT_EQ(CTovUnitSettingsAngleLatLon::Default().Unit(), 12);
    EXPECT_EQ(CTovUnitSettingsDistance::Default().Unit(), 21);
    EXPECT_EQ(Stored(latLon, angleEntry), -1);  // a value does not write
}

TEST_F(UnitSettings, DefaultSettingsChooseAndStore) {
    int const noGon[] = {15, 16, -1};
    CTovUnitSettingsAngle::DefaultSettings(10, nullptr);
    CTovUnitSettingsAngle::DefaultSettings(2, nullptr);
    CTovUnitSettingsAngle::DefaultSettings(16, noGon);
    CTovUnitSettingsAngle::DefaultSettings(21, nullptr);
    EXPECT_EQ(CTovUnitSettingsAngle::Default().Unit(), 2);
    EXPECT_EQ(Stored(angle, angleEntry), -1);

    CTovUnitSettingsAngle::DefaultSettings(13, noGon);
    EXPECT_EQ(CTovUnitSettingsAngle::Default().Unit(), 13);
    EXPECT_EQ(Stored(angle, angleEntry), 13);
    EXPECT_EQ(CTovProfileEntries::ReadTovProfileString(angle, angleText, ""), "deg");

    CTovUnitSettingsAngle::DefaultSettings(11, nullptr);  // what is stored goes before what is given
    EXPECT_EQ(CTovUnitSettingsAngle::Default().Unit(), 13);
    Store(angle, angleEntry, 16);
    CTovUnitSettingsAngle::DefaultSettings(11, noGon);  // unless it is excluded
    EXPECT_EQ(CTovUnitSettingsAngle::Default().Unit(), 11);
    EXPECT_EQ(Stored(angle, angleEntry), 11);

    CTovUnitSettingsAngleLatLon::DefaultSettings(17, nullptr);
    EXPECT_EQ(Stored(latLon, angleEntry), 17);
    CTovUnitSettingsDistance::DefaultSettings(20);
    CTovUnitSettingsDistance::DefaultSettings(11);
    EXPECT_EQ(Stored(distance, distanceEntry), -1);
    CTovUnitSettingsDistance::DefaultSettings(22);
    EXPECT_EQ(CTovUnitSettingsDistance::Default().Unit(), 22);
    EXPECT_EQ(Stored(distance, distanceEntry), 22);
}

TEST_F(UnitSettings, CopyTheirFormat) {
    CTovUnitSettingsAngle settings(11, "%.2f%U");
    CTovUnitSettingsAngle copy(settings);
    CTovUnitSettingsAngle assigned;
    assigned = settings;
    settings.Format("%.1f");
    settings.Precision(3);
    EXPECT_EQ(copy.Format()->Format(), "%.2f%U");
    EXPECT_EQ(assigned.Format()->Format(), "%.2f%U");
    EXPECT_EQ(copy.Precision(), 5);
    EXPECT_EQ(CTovUnitSettingsAngleLatLon().Precision(), 9);
    EXPECT_TRUE(CTovUnitSettingsAngleLatLon().IsKindOf(&CTovUnitSettingsAngle::classCTovUnitSettingsAngle));
    EXPECT_EQ(copy.Unit(), 11);
    EXPECT_NE(copy.Format(), assigned.Format());
    CTovUnitSettingsAngle::Default() = settings;  // the section is the object's own
    EXPECT_EQ(CTovUnitSettingsAngle::Default().Section(), angle);
    EXPECT_EQ(CTovUnitSettingsAngle(CTovUnitSettingsAngle::Default()).Section(), "");
    EXPECT_EQ(CTovUnitSettingsAngleLatLon(CTovUnitSettingsAngleLatLon::Default()).Section(), latLon);
    CTovUnitSettingsAngle::Default() = CTovUnitSettingsAngle();
}

TEST_F(UnitSettings, AbbreviateUnits) {
    struct {
        long unit;
        char const* text;
        char const* small;
    } const rows[] = {
        {2, "", ""},          {10, "", ""},       {11, "dec", "\""},   {12, "", "\""},     {13, "deg", "\""},
        {14, "grad", "mgon"}, {15, "", "mgon"},   {16, "gon", "mgon"}, {17, "rev", "rev"}, {18, "rad", "rad"},
        {21, "m", "m"},       {22, "fts", "fts"}, {23, "fti", "fti"},  {99, "", ""},
    };
    for (auto const& row : rows) {
        CString text = "old";
        CTovUnitSettings::UnitAbbreviation(row.unit, text, 0);
        EXPECT_EQ(text, row.text) << row.unit;
        CTovUnitSettings::UnitAbbreviation(row.unit, text, 1);
        EXPECT_EQ(text, row.small) << row.unit;
    }
    CTovUnitSettingsAngle settings(11, nullptr);
    settings.UseSecOnly(1);
    CString text;
    settings.GetUnitAbbreviation(text);
    EXPECT_EQ(text, "\"");
}

}  // namespace
}  // namespace tov
