#pragma once
// Reads the test vectors: files of one JSON object a line, and the files that they name. A string
// of a vector is a byte string: each of its characters (U+0000 to U+00FF) is one byte. A string
// that ends in many bytes 0xFF stands as [text, n]: the bytes of text, then n bytes 0xFF.

#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <vector>

namespace vectors {

inline std::string fileBytes(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        throw std::runtime_error("cannot open " + path);
    }
    return {std::istreambuf_iterator<char>(file), {}};
}

inline std::vector<nlohmann::json> lines(const std::string& path) {
    std::ifstream file(path);
    if (!file) {
        throw std::runtime_error("cannot open " + path);
    }
    std::vector<nlohmann::json> objects;
    for (std::string line; std::getline(file, line);) {
        objects.push_back(nlohmann::json::parse(line));
    }
    return objects;
}

// Characters below U+0100 take one or two bytes of UTF-8.
inline std::string bytesOfText(const std::string& utf8) {
    std::string bytes;
    for (size_t i = 0; i < utf8.size(); ++i) {
        const auto lead = static_cast<unsigned char>(utf8[i]);
        if (lead < 0x80) {
            bytes.push_back(utf8[i]);
        } else {
            ++i;
            const auto tail = static_cast<unsigned char>(utf8.at(i));
            bytes.push_back(static_cast<char>(((lead & 0x03) << 6) | (tail & 0x3F)));
        }
    }
    return bytes;
}

inline std::string bytesOf(const nlohmann::json& value) {
    if (value.is_array()) {
        return bytesOfText(value.at(0)) + std::string(value.at(1).get<size_t>(), '\xFF');
    }
    return bytesOfText(value);
}

}  // namespace vectors
