#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/resource.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "engine/engine_fixture.h"
#include "support/file.h"

using testing::IsEmpty;

namespace {

const std::vector<std::string> kCategories = {"archive", "file", "audio", "picture", "video"};

// Natively a backslash is an ordinary character, so the whole path is a name in the current folder.
std::string PathOf(const std::string& category) {
    return "C:\\App\\res\\plenx\\icon\\" + category + "\\desktop.ini";
}

std::string ErrorLine(const std::string& path) {
    return "L4 [PLENXSDK] open file" + path +
           " error(DistributedFs::PLENXManagerInner::CreateFileIcon)";
}

std::string ContentOf(const std::string& path) {
    return PlenxSupport::ReadWholeFile(path).value_or("no file");
}

std::string Expected(const std::string& category) {
    return "[.ShellClassInfo]\r\n"
           "IconResource=C:\\App\\res\\plenx\\icon\\" +
           category + "\\" + category +
           ".ico,0\r\n"
           "InfoTip=Categories\r\n"
           "[ViewState]\r\n"
           "Mode=\r\n"
           "Vid=\r\n"
           "FolderType=Generic\r\n";
}

std::vector<std::string> IconTexts() {
    std::vector<std::string> texts;
    for (const std::string& text : TextsOfClass("PLENXManagerInner")) {
        if (text.find("::CreateFileIcon)") != std::string::npos) {
            texts.push_back(text);
        }
    }
    return texts;
}

class CategoryIcons : public EngineTest {};

TEST_F(CategoryIcons, FiveFilesAreWrittenByteForByte) {
    Engine().Init("C:\\App", "C:\\Data");
    for (const std::string& category : kCategories) {
        EXPECT_EQ(ContentOf(PathOf(category)), Expected(category));
    }
    EXPECT_EQ(ContentOf(PathOf("audio")),
              "[.ShellClassInfo]\r\nIconResource=C:\\App\\res\\plenx\\icon\\audio\\audio.ico,0\r\n"
              "InfoTip=Categories\r\n[ViewState]\r\nMode=\r\nVid=\r\nFolderType=Generic\r\n");
    EXPECT_THAT(IconTexts(), IsEmpty());
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator("."), {}), 5);
}

TEST_F(CategoryIcons, FileThatCannotBeOpenedIsLoggedAndTheOthersAreWritten) {
    std::filesystem::create_directory(PathOf("file"));
    Engine().Init("C:\\App", "C:\\Data");
    EXPECT_EQ(IconTexts(), std::vector<std::string>{ErrorLine(PathOf("file"))});
    for (const char* const category : {"archive", "audio", "picture", "video"}) {
        EXPECT_EQ(ContentOf(PathOf(category)), Expected(category));
    }
}

TEST_F(CategoryIcons, MissingFoldersAreLoggedInOrderAndNotMade) {
    const std::string root = "missing/App";
    Engine().Init(root, "C:\\Data");
    std::vector<std::string> expected;
    for (const std::string& category : kCategories) {
        expected.push_back(ErrorLine(root + "\\res\\plenx\\icon\\" + category + "\\desktop.ini"));
    }
    EXPECT_EQ(IconTexts(), expected);
    EXPECT_FALSE(std::filesystem::exists("missing"));
}

TEST_F(CategoryIcons, RootWithANulOpensNoFile) {
    std::ofstream("host.txt") << "the host's";
    const std::string root = std::string("host.txt") + '\0' + "more";
    Engine().Init(root, "C:\\Data");
    EXPECT_EQ(ContentOf("host.txt"), "the host's");
    std::vector<std::string> expected;
    for (const std::string& category : kCategories) {
        expected.push_back(ErrorLine(root + "\\res\\plenx\\icon\\" + category + "\\desktop.ini"));
    }
    EXPECT_EQ(IconTexts(), expected);
}

TEST_F(CategoryIcons, ExistingFileIsOverwrittenEntirely) {
    std::ofstream(PathOf("video")) << std::string(5000, 'x');
    Engine().Init("C:\\App", "C:\\Data");
    EXPECT_EQ(ContentOf(PathOf("video")), Expected("video"));
}

TEST_F(CategoryIcons, SecondInitDoesNotRewriteThem) {
    Engine().Init("C:\\App", "C:\\Data");
    std::ofstream(PathOf("video"), std::ios::trunc) << "changed";
    Engine().Init("C:\\App", "C:\\Data");
    EXPECT_EQ(ContentOf(PathOf("video")), "changed");
}

TEST_F(CategoryIcons, RootOfUtf8IsUsedAsItsBytes) {
    const std::string root = "C:\\\xC3\x9C";
    Engine().Init(root, "C:\\Data");
    EXPECT_EQ(ContentOf(root + "\\res\\plenx\\icon\\file\\desktop.ini").substr(19, 40),
              "IconResource=C:\\\xC3\x9C\\res\\plenx\\icon\\file\\f");
    EXPECT_THAT(IconTexts(), IsEmpty());
}

// A file that was opened but cannot be written gives no line, and the others are written.

// While it lives, no file can grow beyond the size.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t size) : signal_(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &before_);
        const rlimit limit{size, before_.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit() {
        setrlimit(RLIMIT_FSIZE, &before_);
        std::signal(SIGXFSZ, signal_);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

private:
    void (*const signal_)(int);
    rlimit before_{};
};

TEST_F(CategoryIcons, FileOnAFullDiskIsPassedOverSilently) {
    std::filesystem::create_symlink("/dev/full", PathOf("file"));
    Engine().Init("C:\\App", "C:\\Data");
    EXPECT_THAT(IconTexts(), IsEmpty());
    for (const char* const category : {"archive", "audio", "picture", "video"}) {
        EXPECT_EQ(ContentOf(PathOf(category)), Expected(category));
    }
    EXPECT_TRUE(FakeRpc::Get().WaitUntilListening());
}

TEST_F(CategoryIcons, FileThatIsCutShortIsLeftSo) {
    {
        const FileSizeLimit limit(30);
        Engine().Init("C:\\App", "C:\\Data");
    }
    EXPECT_THAT(IconTexts(), IsEmpty());
    for (const std::string& category : kCategories) {
        EXPECT_EQ(ContentOf(PathOf(category)), Expected(category).substr(0, 30));
    }
    EXPECT_TRUE(FakeRpc::Get().WaitUntilListening());
}

}  // namespace
