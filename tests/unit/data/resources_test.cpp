#include "data/cldr_importer.h"
#include "data/unicode_data_importer.h"
#include "data/unikemet_importer.h"
#include "resource_folder.h"

#include <gmock/gmock.h>

namespace glyma {
namespace {

using test::RecordingLog;
using test::ResourceFolder;
using testing::AllOf;
using testing::HasSubstr;

TEST(ResourceLocator, TakesTheFolderFirstThenWhatLiesBelowItsDataFolder) {
    const ResourceFolder folder;
    const auto locator = folder.locator();
    EXPECT_EQ(locator.find("Blocks", "txt"), std::nullopt);

    folder.write("Glyma/Data/.hidden/Blocks.txt", "");
    folder.write("Glyma/Data/other/Blocks.txt.bak", "");
    std::filesystem::create_directories(folder.path() / "Glyma/Data/decoy/Blocks.txt");
    EXPECT_EQ(locator.find("Blocks", "txt"), std::nullopt) << "hidden, misnamed, or a folder";

    const auto nested = folder.write("Glyma/Data/ucd/17/Blocks.txt", "");
    EXPECT_EQ(locator.find("Blocks", "txt"), nested);

    const auto direct = folder.write("Blocks.txt", "");
    EXPECT_EQ(locator.find("Blocks", "txt"), direct);
    EXPECT_EQ(ResourceLocator("/nowhere").find("Blocks", "txt"), std::nullopt);
}

template<typename Result>
std::string errorOf(const Result& result) {
    return result ? std::string() : result.error();
}

/// What each reader says about the file as it is in the folder.
struct Problems {
    explicit Problems(const ResourceFolder& folder) {
        RecordingLog log;
        const auto locator = folder.locator();
        const UnicodeDataImporter unicodeData(locator);
        const std::vector<UnicodeDataImporter::BlockData> noBlocks;
        blocks = errorOf(unicodeData.loadBlocks());
        characters = errorOf(unicodeData.loadCharacters(noBlocks));
        annotations = errorOf(CLDRImporter(locator, log.log).load());
        hieroglyphs = errorOf(UniKemetImporter(locator, log.log).load());
    }
    std::string blocks, characters, annotations, hieroglyphs;
};

void writeAll(const ResourceFolder& folder, std::string_view content) {
    for (const auto* name : {"Blocks.txt", "UnicodeData.txt", "annotations.json", "Unikemet.txt"})
        folder.write(name, content);
}

void expectProblem(const std::string& problem, const ResourceFolder& folder, const char* file,
                   const char* why) {
    EXPECT_THAT(problem, AllOf(HasSubstr(file), HasSubstr(folder.path().string()), HasSubstr(why),
                               HasSubstr("GLYMA_RESOURCE_DIR")));
}

TEST(Readers, SayWhichFileIsMissing) {
    const ResourceFolder folder;
    const Problems problems(folder);
    EXPECT_EQ(problems.blocks, "Blocks.txt not found in " + folder.path().string() +
                                   ": reinstall Glyma or set GLYMA_RESOURCE_DIR");
    expectProblem(problems.characters, folder, "UnicodeData.txt", "not found");
    expectProblem(problems.annotations, folder, "annotations.json", "not found");
    expectProblem(problems.hieroglyphs, folder, "Unikemet.txt", "not found");
}

TEST(Readers, SayWhichFileHoldsNothing) {
    const ResourceFolder folder;
    writeAll(folder, "");
    const Problems empty(folder);
    expectProblem(empty.blocks, folder, "Blocks.txt", "holds no blocks");
    expectProblem(empty.characters, folder, "UnicodeData.txt", "holds no characters");
    expectProblem(empty.annotations, folder, "annotations.json", "unexpected end of input");
    EXPECT_EQ(empty.hieroglyphs, "") << "the signs are found by number without it";

    writeAll(folder, "<html>404</html>\n");
    const Problems other(folder);
    expectProblem(other.blocks, folder, "Blocks.txt", "holds no blocks");
    expectProblem(other.characters, folder, "UnicodeData.txt", "holds no characters");
    expectProblem(other.annotations, folder, "annotations.json", "parse error");

    folder.write("annotations.json", R"({"annotations": {"annotations": {"a": {"tts": ["a"]}}}})");
    expectProblem(Problems(folder).annotations, folder, "annotations.json", "holds no annotations");
    folder.write("annotations.json", "[]");
    expectProblem(Problems(folder).annotations, folder, "annotations.json",
                  "Unexpected top-level JSON structure");
}

TEST(Readers, RefuseTextThatIsNotUtf8) {
    const ResourceFolder folder;
    writeAll(folder, "0000..007F; Basic Latin\n0041;LATIN \xE9;Lu\nU+13000\tkEH_Desc\t\xFFman\n");
    const Problems problems(folder);
    expectProblem(problems.blocks, folder, "Blocks.txt", "is not UTF-8 text");
    expectProblem(problems.characters, folder, "UnicodeData.txt", "is not UTF-8 text");
    expectProblem(problems.annotations, folder, "annotations.json", "is not UTF-8 text");
    expectProblem(problems.hieroglyphs, folder, "Unikemet.txt", "is not UTF-8 text");
}

TEST(Readers, SayThatAFileCannotBeRead) {
    const ResourceFolder folder;
    writeAll(folder, "0000..007F; Basic Latin\n");
    std::filesystem::remove(folder.path() / "Blocks.txt");
    // A regular file that can be opened, but not read from its beginning, not even by root.
    std::filesystem::create_symlink("/proc/self/mem", folder.path() / "Blocks.txt");
    expectProblem(Problems(folder).blocks, folder, "Blocks.txt", "cannot be read (Input/output error)");
}

TEST(Readers, TellTheDebugLogWhatTheyRead) {
    RecordingLog log;
    EXPECT_TRUE(CLDRImporter(test::shippedFiles, log.log).load());
    EXPECT_TRUE(UniKemetImporter(test::shippedFiles, log.log).load());
    EXPECT_THAT(log.sink.lines(),
                testing::ElementsAre("Glyma: loading CLDR annotations from annotations.json…",
                                     "Glyma: parsed 4445 hieroglyph descriptions from Unikemet.txt"));
}

} // namespace
} // namespace glyma
