#include "tools/clip/media/media_file.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <iterator>
#include <map>
#include <optional>
#include <vector>

extern "C" {
#include <libavutil/display.h>
}

#include "tools/base/errors.h"
#include "tools/clip/media/image_sequence.h"

namespace maker {

namespace {

constexpr double kFallbackFps = 25;

int interruptAsked(void*) {
    return interrupted() ? 1 : 0;
}

bool isThere(const std::string& path) {
    std::error_code ignored;
    return std::filesystem::exists(path, ignored);
}

void checkReadable(const std::string& path) {
    std::error_code ignored;
    const std::filesystem::file_status status = std::filesystem::status(path, ignored);
    if (std::filesystem::is_directory(status)) {
        throw ToolError("cannot read " + path + ": it is a folder");
    }
    const bool there = std::filesystem::exists(status);
    if (there ? std::filesystem::is_fifo(status) || std::filesystem::is_character_file(status)
              : path == "-") {
        throw ToolError("cannot read " + path +
                        ": films are read more than once, so save it to a file first");
    }
}

// A colon would make FFmpeg look for a protocol in the name of a file or pattern.
std::string addressOf(const std::string& path) {
    const bool isFile = isThere(path) || imagePattern(path);
    return isFile && path.find(':') != std::string::npos ? "file:" + path : path;
}

const int32_t* displayMatrix(const AVStream& stream) {
#if LIBAVCODEC_VERSION_INT >= AV_VERSION_INT(60, 31, 102)
    const AVPacketSideData* data =
        av_packet_side_data_get(stream.codecpar->coded_side_data,
                                stream.codecpar->nb_coded_side_data, AV_PKT_DATA_DISPLAYMATRIX);
    return data != nullptr ? reinterpret_cast<const int32_t*>(data->data) : nullptr;
#else
    return reinterpret_cast<const int32_t*>(
        av_stream_get_side_data(&stream, AV_PKT_DATA_DISPLAYMATRIX, nullptr));
#endif
}

// Left alone, FFmpeg looks for a first picture numbered 0 to 4 only, and shows 25 a second; and a
// picture that is there under the name of a pattern is not found. The caller frees the options.
AVDictionary* sequenceOptions(const std::string& path, double fps) {
    AVDictionary* options = nullptr;
    const std::optional<ImagePattern> pattern = imagePattern(path);
    const auto pictures = pattern ? picturesOf(*pattern) : std::map<int, std::string>();
    if (!pictures.empty()) {
        const std::string rate = std::to_string(fps > 0 ? fps : kFallbackFps);
        av_dict_set_int(&options, "start_number", pictures.begin()->first, 0);
        av_dict_set(&options, "framerate", rate.c_str(), 0);
    } else if (isThere(path)) {
        av_dict_set(&options, "pattern_type", "none", 0);
    }
    return options;
}

// Some facts stand only in the pictures, so FFmpeg decodes the first ones here.
int findStreams(AVFormatContext& format) {
    std::vector<AVDictionary*> options(format.nb_streams, nullptr);
    for (AVDictionary*& entry : options) {
        av_dict_set_int(&entry, "max_pixels", kMaxPicturePixels, 0);
    }
    const size_t streams = options.size();
    const int error = avformat_find_stream_info(&format, streams > 0 ? options.data() : nullptr);
    for (AVDictionary*& entry : options) {
        av_dict_free(&entry);
    }
    return error;
}

bool isCover(const AVStream& stream) {
    return (stream.disposition & AV_DISPOSITION_ATTACHED_PIC) != 0;
}

// The best stream that is not a cover picture, or FFmpeg's error.
int bestStream(AVFormatContext& format, const AVCodec** codec) {
    int index = av_find_best_stream(&format, AVMEDIA_TYPE_VIDEO, -1, -1, codec, 0);
    for (unsigned i = 0; index >= 0 && isCover(*format.streams[index]); ++i) {
        if (i == format.nb_streams) {
            return AVERROR_STREAM_NOT_FOUND;
        }
        const bool video = format.streams[i]->codecpar->codec_type == AVMEDIA_TYPE_VIDEO;
        if (video && !isCover(*format.streams[i])) {
            const int wanted = static_cast<int>(i);
            index = av_find_best_stream(&format, AVMEDIA_TYPE_VIDEO, wanted, -1, codec, 0);
        }
    }
    return index;
}

// FFmpeg can show text files as pictures of a terminal.
bool isTextShow(const AVFormatContext& format) {
    constexpr const char* kTextShows[] = {"tty", "bin", "xbin", "adf", "idf"};
    return std::any_of(std::begin(kTextShows), std::end(kTextShows), [&format](const char* name) {
        return std::strcmp(format.iformat->name, name) == 0;
    });
}

}  // namespace

std::string reasonOf(int error) {
    char text[AV_ERROR_MAX_STRING_SIZE] = "";
    av_strerror(error, text, sizeof(text));
    return text;
}

std::string troubleOf(int error) {
    const std::string reason = reasonOf(error);
    switch (error) {
        case AVERROR_INVALIDDATA:
        case AVERROR_EOF:
            return "it is damaged, cut short, or neither film nor picture; if a player shows it, "
                   "export it anew from there (" +
                   reason + ")";
        case AVERROR_DEMUXER_NOT_FOUND:
        case AVERROR_DECODER_NOT_FOUND:
        case AVERROR_PATCHWELCOME:
        case AVERROR(ENOSYS):
            return "nothing here reads its kind of film; export it as MP4 or MOV (" + reason + ")";
        case AVERROR(EIO):
            return "the disk or card that it lies on does not give it; copy it elsewhere (" +
                   reason + ")";
        default:
            return reason;
    }
}

FormatPtr openMedia(const std::string& path, double pictureFps) {
    checkReadable(path);
    av_log_set_level(AV_LOG_QUIET);
    const std::string address = addressOf(path);
    AVDictionary* options = sequenceOptions(path, pictureFps);
    AVFormatContext* format = needed(avformat_alloc_context());
    format->interrupt_callback.callback = interruptAsked;
    int error = avformat_open_input(&format, address.c_str(), nullptr, &options);
    av_dict_free(&options);
    FormatPtr opened(error < 0 ? nullptr : format);
    if (error >= 0) {
        error = findStreams(*format);
    }
    stopIfInterrupted();
    if (error < 0) {
        throw ToolError("cannot read " + path + ": " + troubleOf(error));
    }
    return opened;
}

AVStream* videoStream(AVFormatContext& format, const std::string& path, const AVCodec** codec) {
    const int index = bestStream(format, codec);
    if (index == AVERROR_DECODER_NOT_FOUND) {
        throw ToolError("cannot read " + path + ": nothing here decodes its kind of video");
    }
    if (index < 0 || isTextShow(format)) {
        throw ToolError("cannot read " + path + ": there is no video in it");
    }
    return format.streams[index];
}

// The matrix turns counter-clockwise. Only whole quarter turns count.
int quarterTurns(const AVStream& stream) {
    const int32_t* matrix = displayMatrix(stream);
    if (matrix == nullptr) {
        return 0;
    }
    const double angle = av_display_rotation_get(matrix);
    if (std::isnan(angle)) {
        return 0;
    }
    const int turns = static_cast<int>(std::lround(-angle / 90)) % 4;
    return (turns + 4) % 4;
}

}  // namespace maker
