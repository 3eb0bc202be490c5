// The requests that the judge sends, in good form and in every broken form that the page names.

#ifndef PLENXKIT_JUDGE_FORMS_H
#define PLENXKIT_JUDGE_FORMS_H

#include <string>
#include <vector>

#include "judge/program.h"
#include "wire/catalog.h"

namespace PlenxJudge {

/// A request, and what is special about it in a few words.
struct Form {
    std::string what;
    Request request;
};
using Forms = std::vector<Form>;

/// The group that the judge works with: "judge_1" for the PC service.
std::string GroupOf(int role);

/// The usual arguments of a request.
PlenxWire::Arguments UsualArguments(std::int32_t id, int role);

/// Each request once, in the order in which a host sends them.
Forms UsualRequests(int role);

Form FormOf(std::int32_t id, const PlenxWire::Arguments& arguments, const std::string& what);

enum class Breakage {
    kCut,
    kPadded,
    kTotalSize,
    kCount,
    kType,
    kOffset,
    kSize,
    kNul,
    kDescription,
    kUnknownId,
    kTiny,
};

Forms BrokenForms(Breakage breakage, int role);

enum class Text { kEmpty, kLong, kNotUtf8, kWithNul };

/// Each text of each request in this form. Texts that are never empty stay as they are.
Forms TextForms(Text text, int role);

}  // namespace PlenxJudge

#endif  // PLENXKIT_JUDGE_FORMS_H
