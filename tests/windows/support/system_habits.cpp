#include "support/system_habits.h"

#include <windows.h>

#include <string>

namespace PlenxTest {

const SystemHabits& HabitsOfThisSystem() {
    using GetVersion = const char*(__cdecl*)();
    const FARPROC found = GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version");
    const auto version = reinterpret_cast<GetVersion>(reinterpret_cast<void*>(found));
    return HabitsOfWine(version == nullptr ? 0 : std::stoi(version()));
}

}  // namespace PlenxTest
