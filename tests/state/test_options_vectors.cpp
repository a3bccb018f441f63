// Preferences and controller map: reading and writing against files whose result is known.
#include <zlib.h>

#include "pure/vectors.h"
#include "state/stage.h"

namespace {

using nlohmann::json;

constexpr const char* kFolder = TEST_DATA "/xml/";
constexpr const char* kPrefs = "userdata/prefs.xml";
constexpr const char* kController = "userdata/gamecontroller.xml";

class OptionsVectors : public StageTest {};

// True when the vector names an input, or says that there is none; false when it only writes.
bool placeInput(const json& vector, const char* userFile) {
    std::filesystem::remove(userFile);
    if (!vector.contains("file")) {
        return false;
    }
    if (!vector.at("file").is_null()) {
        std::string content = vectors::fileBytes(kFolder + vector.at("file").get<std::string>());
        content.resize(vector.value("truncate", content.size()));
        writeFile(userFile, content);
    }
    return true;
}

void expectSaved(const json& expected, const char* userFile) {
    const std::string saved = readFile(userFile);
    EXPECT_EQ(saved.size(), expected.at("length").get<size_t>());
    const auto sum =
        crc32(0, reinterpret_cast<const Bytef*>(saved.data()), static_cast<uInt>(saved.size()));
    EXPECT_EQ(sum, std::stoul(expected.at("crc32").get<std::string>(), nullptr, 16));
    if (expected.contains("file")) {
        EXPECT_EQ(saved, vectors::fileBytes(kFolder + expected.at("file").get<std::string>()));
    }
}

void setFilters(int layer, const json& ids) {
    for (int slot = 0; slot < kFilterSlots; ++slot) {
        _filters->slots[layer][slot].id = ids.at(static_cast<size_t>(slot));
    }
}

void expectFilters(int layer, const json& ids) {
    for (int slot = 0; slot < kFilterSlots; ++slot) {
        EXPECT_EQ(_filters->slots[layer][slot].id, ids.at(static_cast<size_t>(slot)).get<int>())
            << "layer " << layer << " slot " << slot;
    }
}

void setPrefs(const json& values) {
    _options->topbar = values.at("topbar");
    _options->fps = values.at("fps");
    all->appW = values.at("width");
    all->appH = values.at("height");
    setFilters(0, values.at("filters0"));
    setFilters(1, values.at("filters1"));
}

TEST_F(OptionsVectors, Prefs_ReadAndWrittenAsListed) {
    int tests = 0;
    for (const json& vector : vectors::lines(std::string(kFolder) + "prefs.jsonl")) {
        SCOPED_TRACE(vector.at("id").get<std::string>());
        const json& expected = vector.at("expect");
        setPrefs(vector.at("initial"));
        if (placeInput(vector, kPrefs)) {
            EXPECT_EQ(printedBy([] { _options->lireXML(); }), expected.at("stdout"));
            EXPECT_EQ(_options->topbar, expected.at("topbar").get<int>());
            EXPECT_EQ(_options->fps, expected.at("fps").get<int>());
            EXPECT_EQ(all->appW, expected.at("width").get<int>());
            EXPECT_EQ(all->appH, expected.at("height").get<int>());
            expectFilters(0, expected.at("filters0"));
            expectFilters(1, expected.at("filters1"));
        }
        EXPECT_EQ(printedBy([] { _options->saveXML(); }), "");
        expectSaved(expected.at("saved"), kPrefs);
        ++tests;
    }
    EXPECT_EQ(tests, 125);
}

TEST_F(OptionsVectors, Controller_ReadAndWrittenAsListed) {
    int tests = 0;
    for (const json& vector : vectors::lines(std::string(kFolder) + "controller.jsonl")) {
        SCOPED_TRACE(vector.at("id").get<std::string>());
        const json& expected = vector.at("expect");
        for (size_t entry = 0; entry < kPadEntries; ++entry) {
            keys->padButton[entry] = vector.at("initial").at("padButton").at(entry);
        }
        if (placeInput(vector, kController)) {
            EXPECT_EQ(printedBy([] { _options->lireXMLController(); }), expected.at("stdout"));
            for (size_t entry = 0; entry < kPadEntries; ++entry) {
                EXPECT_EQ(keys->padButton[entry], expected.at("padButton").at(entry).get<int>())
                    << "entry " << entry;
            }
        }
        EXPECT_EQ(printedBy([] { _options->saveXMLController(); }), "");
        expectSaved(expected.at("saved"), kController);
        ++tests;
    }
    EXPECT_EQ(tests, 58);
}

}  // namespace
