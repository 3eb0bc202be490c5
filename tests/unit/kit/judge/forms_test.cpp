// Tests the requests that the judge sends. Those that are meant to be good are good, and those that
// are meant to be broken are broken.

#include "judge/forms.h"

#include <gtest/gtest.h>

#include <set>

namespace PlenxJudge {
namespace {

constexpr Breakage kBreakages[] = {
    Breakage::kCut,         Breakage::kPadded,    Breakage::kTotalSize, Breakage::kCount,
    Breakage::kType,        Breakage::kOffset,    Breakage::kSize,      Breakage::kNul,
    Breakage::kDescription, Breakage::kUnknownId, Breakage::kTiny,
};

bool IsGood(const Form& form) {
    const PlenxWire::MessageShape* const shape = PlenxWire::FindMessage(form.request.id);
    return shape && shape->direction == PlenxWire::Direction::kRequest &&
           PlenxWire::DecodeAs(*shape, form.request.bytes.data(), form.request.bytes.size()).Ok();
}

TEST(UsualForms, AreGoodAndNameEachRequest) {
    for (int role = 0; role < 3; ++role) {
        std::set<std::int32_t> ids;
        for (const Form& form : UsualRequests(role)) {
            EXPECT_TRUE(IsGood(form)) << form.what;
            ids.insert(form.request.id);
        }
        EXPECT_EQ(ids.size(), 9u);
    }
}

TEST(TextForms, AreGood) {
    for (const Text text : {Text::kEmpty, Text::kLong, Text::kNotUtf8, Text::kWithNul}) {
        const Forms forms = TextForms(text, 1);
        EXPECT_FALSE(forms.empty());
        for (const Form& form : forms) {
            EXPECT_TRUE(IsGood(form)) << form.what;
        }
    }
}

TEST(BrokenForms, AreBrokenInEachWay) {
    for (const Breakage breakage : kBreakages) {
        const Forms forms = BrokenForms(breakage, 1);
        EXPECT_GE(forms.size(), 10u);
        for (const Form& form : forms) {
            EXPECT_FALSE(IsGood(form)) << form.what;
        }
    }
}

TEST(BrokenForms, AreToldApartByTheirWords) {
    for (const Breakage breakage : kBreakages) {
        std::set<std::string> words;
        for (const Form& form : BrokenForms(breakage, 1)) {
            EXPECT_TRUE(words.insert(form.what).second) << form.what;
        }
    }
}

TEST(Groups, EndInTheDigitOfTheRole) {
    EXPECT_EQ(GroupOf(0), "judge_0");
    EXPECT_EQ(GroupOf(2), "judge_2");
}

}  // namespace
}  // namespace PlenxJudge
