#include "distributedfile/device_folder.h"

#include <gmock/gmock.h>

#include <set>

#include "temporary_folder.h"

using Office::FolderName;
using Office::MakeDeviceFolder;

TEST(FolderNameTest, OrdinaryNamesStayAsTheyAre) {
    for (const char* const name :
         {"group", "Group_1", "a b", ".hidden", "a.b", "h\xC3\xA9\xE4\xB8\xAD", "console", "com",
          "com10", "nul1", "aux-1"}) {
        EXPECT_EQ(FolderName(name), name);
    }
}

TEST(FolderNameTest, SeparatorsAndForbiddenCharactersAreEncoded) {
    EXPECT_EQ(FolderName("a/b\\c"), "a%2Fb%5Cc");
    EXPECT_EQ(FolderName("<>:\"|?*%"), "%3C%3E%3A%22%7C%3F%2A%25");
    EXPECT_EQ(FolderName(std::string("a\0\n\x1F\x7F", 5)), "a%00%0A%1F%7F");
}

TEST(FolderNameTest, NoNameLeadsOutOfTheFolder) {
    EXPECT_EQ(FolderName("."), "%2E");
    EXPECT_EQ(FolderName(".."), ".%2E");
    EXPECT_EQ(FolderName("..\\..\\x"), "..%5C..%5Cx");
    EXPECT_EQ(FolderName("C:\\Windows"), "C%3A%5CWindows");
    EXPECT_EQ(FolderName("file:stream"), "file%3Astream");
}

TEST(FolderNameTest, EndsThatTheSystemDropsAreEncoded) {
    EXPECT_EQ(FolderName("a."), "a%2E");
    EXPECT_EQ(FolderName("a "), "a%20");
    EXPECT_EQ(FolderName(" "), "%20");
    EXPECT_EQ(FolderName("a. ."), "a. %2E");
}

TEST(FolderNameTest, DeviceNamesAreEncoded) {
    EXPECT_EQ(FolderName("con"), "%63on");
    EXPECT_EQ(FolderName("NUL.txt"), "%4EUL.txt");
    EXPECT_EQ(FolderName("aux .x"), "%61ux .x");
    EXPECT_EQ(FolderName("COM1"), "%43OM1");
    EXPECT_EQ(FolderName("lpt9.a.b"), "%6Cpt9.a.b");
    EXPECT_EQ(FolderName("com\u00B2"), "%63om\u00B2");
    EXPECT_EQ(FolderName("CONIN$"), "%43ONIN$");
}

TEST(FolderNameTest, DifferentNamesStayDifferent) {
    const char* const names[] = {"a/b", "a\\b", "a%2Fb", "a%b", "a_b",
                                 "a",   "a.",   "a%2E",  "con", "%63on"};
    std::set<std::string> folders;
    for (const char* const name : names) {
        folders.insert(FolderName(name));
    }
    EXPECT_EQ(folders.size(), std::size(names));
}

TEST(DeviceFolderTest, FolderIsMadeUnderTheDataFolder_EvenTwice) {
    const TemporaryFolder data;
    std::string dir = "before";
    ASSERT_TRUE(MakeDeviceFolder(data.Path().string(), "g\xC3\xA9", "d:1", dir));
    EXPECT_EQ(dir, (data / "office/g\xC3\xA9/d%3A1").string());
    EXPECT_TRUE(std::filesystem::is_directory(dir));
    EXPECT_TRUE(MakeDeviceFolder(data.Path().string(), "g\xC3\xA9", "d:1", dir));
}

TEST(DeviceFolderTest, FolderThatCannotBeMade_LeavesDirUnchanged) {
    const TemporaryFolder data;
    std::ofstream(data / "office") << "in the way";
    std::string dir = "before";
    EXPECT_FALSE(MakeDeviceFolder(data.Path().string(), "g", "d", dir));
    EXPECT_FALSE(MakeDeviceFolder(data.Path().string(), std::string(300, 'x'), "d", dir));
    EXPECT_EQ(dir, "before");
}
