#include <kora/Utl.h>

#include "geometry/PreferredUnit.h"
#include "tests/settings/StoreFixture.h"

namespace {

std::string written(int value, int unit, CString text = "old") {
    return UtlQzUnitsToString(value, text, eUtlUnit(unit)), text;
}
std::string read(const CString& text, int unit = 2) {
    CString copy = text;
    int value = -7;
    const bool good = UtlStringToQzUnits(copy, value, eUtlUnit(unit));
    EXPECT_TRUE(copy == text && (good || value == -7));
    return good ? std::to_string(value) : "no";
}

TEST(Lengths, AreWrittenAndReadInSinglePrecision) {
    EXPECT_EQ(written(0, 1) + written(-1260, 1) + written(10080, 1) + written(-1, 3), "0 in-1.25 in10 in-0.003 cm");
    EXPECT_EQ(written(1300009, 1) + written(7500195, 1) + read("1", 1) + read("1", 9), "1289.692 in7440.669 in1008397");
    // what is written or read is another where the quotient, the number, the product or the sum are wider
    EXPECT_EQ(read("617.233 cm") + read("784.165 cm") + read("12326.849 in"), "24504131131412425464");
    for (const auto& [value, texts] : std::vector<std::pair<CString, std::vector<const char*>>>{
             {"1008", {"  1\"", "1in", "1 In.", "1 INCH  ", "1. in", "01.0.9in"}},
             {"no",
              {"", " ", ".", "..1", "-1", "in", "1 ft", "1 in in", "\t1", "1\tin", "1 in\t", "1e3",
               "9999999999999999999999999999999999999999", "340000000000000000000000000000000000000"}},
             {"993", {"2.5 cm", "2.5 Cm.", "2.5"}},
             {"0", {"0", "30000000000000000", "00.00000000000000000000000000000000000000000000000000001"}},
             {"-324967424", {"10000000 cm"}}})
        for (const char* text : texts) EXPECT_EQ(read(text), value) << text;
    for (int value = 0; value < 1000000; value += 7) ASSERT_EQ(read(written(value, 2)), std::to_string(value));
}

using PreferredUnit = kora::test::StoreFixture;

TEST_F(PreferredUnit, IsReadOnce) {
    const std::string key = "[System]\nLengthUnit = ";
    for (const auto& [profile, inch] : {std::pair{key + "iNCH", true}, {"", true}, {key + "cm", false}, {key, false}}) {
        main(profile);
        EXPECT_EQ(UtlGetPreferredUnit(), inch ? UtlUnitInch : UtlUnitCm) << profile;
        main(inch ? key + "cm" : "");
        EXPECT_STREQ(UtlGetPreferredUnitText(), inch ? "Inch" : "cm");
        EXPECT_EQ(written(1008, 0) + read("1", 0), inch ? "1 in1008" : "2.539 cm397");
        kora::preferredUnitForget();
    }
}

}  // namespace
