// Reading and writing playlists.xml against files whose result is known, byte for byte.
#include <zlib.h>

#include <algorithm>

#include "pure/vectors.h"
#include "state/stage.h"

namespace {

constexpr const char* kFolder = TEST_DATA "/xml/";
constexpr const char* kUserFile = "userdata/playlists.xml";

class PlaylistVectors : public StageTest {};

void placeInput(const nlohmann::json& vector) {
    std::filesystem::remove(kUserFile);
    if (vector.at("file").is_null()) {
        return;
    }
    std::string content = vectors::fileBytes(kFolder + vector.at("file").get<std::string>());
    if (vector.contains("truncate")) {
        content.resize(vector.at("truncate").get<size_t>());
    }
    writeFile(kUserFile, content);
}

void expectFamille(const Famille& famille, const nlohmann::json& expected) {
    EXPECT_EQ(famille.name, vectors::bytesOf(expected.at("name")));
    ASSERT_EQ(famille.nbTracks, expected.at("nbTracks").get<int>());
    const nlohmann::json& tracks = expected.at("tracks");
    ASSERT_EQ(tracks.size(), static_cast<size_t>(famille.nbTracks));
    for (size_t t = 0; t < tracks.size(); ++t) {
        EXPECT_EQ(famille.tracks[t].path, vectors::bytesOf(tracks.at(t))) << "track " << t;
    }
}

void expectFamilles(const nlohmann::json& expected) {
    ASSERT_EQ(playlist->nbFamilles, expected.at("nbFamilles").get<int>());
    int index = 0;
    for (const nlohmann::json& each : expected.at("families")) {
        for (int times = each.value("times", 1); times > 0; --times) {
            SCOPED_TRACE("famille " + std::to_string(index));
            ASSERT_LT(index, playlist->nbFamilles);
            expectFamille(playlist->familles[index++], each);
        }
    }
    EXPECT_EQ(index, playlist->nbFamilles);
}

void expectSaved(const nlohmann::json& expected) {
    EXPECT_EQ(printedBy([] { playlist->saveXML(); }), "");
    const std::string saved = readFile(kUserFile);
    EXPECT_EQ(saved.size(), expected.at("length").get<size_t>());
    const auto sum =
        crc32(0, reinterpret_cast<const Bytef*>(saved.data()), static_cast<uInt>(saved.size()));
    EXPECT_EQ(sum, std::stoul(expected.at("crc32").get<std::string>(), nullptr, 16));
    if (expected.contains("file")) {
        EXPECT_EQ(saved, vectors::fileBytes(kFolder + expected.at("file").get<std::string>()));
    }
}

TEST_F(PlaylistVectors, EveryFile_FamillesAndSavedBytes) {
    const auto cases = vectors::lines(std::string(kFolder) + "playlists.jsonl");
    ASSERT_EQ(cases.size(), 98u);
    for (const nlohmann::json& each : cases) {
        SCOPED_TRACE(each.at("id").get<std::string>());
        placeInput(each);
        const nlohmann::json& expected = each.at("expect");
        EXPECT_EQ(printedBy([] { playlist->lireXML(); }), vectors::bytesOf(expected.at("stdout")));
        EXPECT_EQ(playlist->file, nullptr);
        expectFamilles(expected);
        expectSaved(expected.at("saved"));
    }
}

void runOperation(const nlohmann::json& step) {
    const std::string op = step.at("op");
    if (op == "removeFamille") {
        playlist->removeFamille(step.at("index"));
    } else if (op == "deplacerFamille") {
        playlist->deplacerFamille(step.at("from"), step.at("to"));
    } else {
        ASSERT_EQ(op, "createNewFamille");
        playlist->newName = vectors::bytesOf(step.at("newName"));
        playlist->createNewFamille();
    }
}

void expectPast(const nlohmann::json& past) {
    ASSERT_EQ(past.at("index").get<int>(), playlist->nbFamilles);
    const Famille& unused = playlist->familles[playlist->nbFamilles];
    EXPECT_EQ(unused.nbTracks, past.at("nbTracks").get<int>());
    for (size_t t = 0; t < past.at("tracks").size(); ++t) {
        EXPECT_EQ(unused.tracks[t].path, vectors::bytesOf(past.at("tracks").at(t)));
    }
}

void placeFamilles(const nlohmann::json& families) {
    playlist->nbFamilles = 0;
    for (Famille& record : playlist->familles) {
        record = {};
    }
    for (const nlohmann::json& each : families) {
        std::vector<std::string> paths;
        std::transform(each.at("tracks").begin(), each.at("tracks").end(),
                       std::back_inserter(paths), vectors::bytesOf);
        addFamille(vectors::bytesOf(each.at("name")), paths);
    }
}

TEST_F(PlaylistVectors, EveryListOperation_NamesRecordsAndSavedBytes) {
    const auto cases = vectors::lines(std::string(kFolder) + "families.jsonl");
    ASSERT_EQ(cases.size(), 28u);
    for (const nlohmann::json& each : cases) {
        SCOPED_TRACE(each.at("id").get<std::string>());
        placeFamilles(each.at("families"));
        for (size_t i = 0; i < each.at("ops").size(); ++i) {
            SCOPED_TRACE("operation " + std::to_string(i));
            const nlohmann::json& step = each.at("ops").at(i);
            runOperation(step);
            std::vector<std::string> names;
            std::transform(step.at("names").begin(), step.at("names").end(),
                           std::back_inserter(names), vectors::bytesOf);
            EXPECT_EQ(familleNames(), names);
            if (step.contains("past")) {
                expectPast(step.at("past"));
            }
        }
        expectFamilles(each.at("expect"));
        expectSaved(each.at("expect").at("saved"));
    }
}

}  // namespace
