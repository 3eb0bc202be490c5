#include "windows/support/system_habits.h"

#ifdef _WIN32
#include <windows.h>
#endif

#include <sstream>

namespace PlenxTest {
namespace {

bool HasPart(const std::string& cell, const std::string& seen) {
    std::istringstream parts(cell);
    for (std::string part; std::getline(parts, part, '|');) {
        if (part == seen) {
            return true;
        }
    }
    return false;
}

const char* NameOf(System system) {
    switch (system) {
    case System::kWine8:
        return "Wine 8";
    case System::kWine10:
        return "Wine 10";
    default:
        return "Windows";
    }
}

}  // namespace

System ThisSystem() {
#ifdef _WIN32
    using GetVersion = const char*(__cdecl*)();
    const FARPROC found = GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version");
    const auto version = reinterpret_cast<GetVersion>(reinterpret_cast<void*>(found));
    if (version != nullptr) {
        return std::stoi(version()) >= 10 ? System::kWine10 : System::kWine8;
    }
#endif
    return System::kWindows;
}

const char* CellOf(const Habit& habit, System system) {
    switch (system) {
    case System::kWine8:
        return habit.wine8;
    case System::kWine10:
        return habit.wine10;
    default:
        return habit.windows;
    }
}

std::optional<std::string> Complaint(const Habit& habit, const std::string& seen, System system) {
    const char* const cell = CellOf(habit, system);
    if (cell == kOpen || HasPart(cell, seen)) {
        return std::nullopt;
    }
    return std::string(habit.name) + ": " + seen + ", but on " + NameOf(system) + " it is " + cell;
}

bool IsOpen(const Habit& habit) {
    return CellOf(habit, ThisSystem()) == kOpen;
}

bool IsUsual(const Habit& habit, const std::string& seen) {
    return !IsOpen(habit) && HasPart(CellOf(habit, ThisSystem()), seen);
}

testing::AssertionResult Shows(const Habit& habit, const std::string& seen) {
    testing::Test::RecordProperty(std::string("habit: ") + habit.name,
                                  IsOpen(habit) ? seen + " (recorded, not judged)" : seen);
    const auto complaint = Complaint(habit, seen, ThisSystem());
    return complaint ? testing::AssertionFailure() << *complaint : testing::AssertionSuccess();
}

}  // namespace PlenxTest
