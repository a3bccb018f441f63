#include "tools/clip/set/pack_writer.h"

#include <unistd.h>
#include <zip.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>

#include "tools/base/atomic_file.h"
#include "tools/base/errors.h"
#include "tools/clip/set/manifest.h"
#include "tools/clip/set/pack_names.h"
#include "tools/clip/set/pack_reader.h"
#include "tools/clip/set/zip_error.h"

namespace maker {

namespace fs = std::filesystem;

namespace {

// The first day that a zip can tell, at midnight.
constexpr zip_uint16_t kTime = 0;
constexpr zip_uint16_t kDate = 1 << 5 | 1;
constexpr zip_uint32_t kAttributes = zip_uint32_t{0100644} << 16;

struct Discard {
    void operator()(zip_t* zip) const { zip_discard(zip); }
};
using Zip = std::unique_ptr<zip_t, Discard>;

[[noreturn]] void fail(const fs::path& target, const std::string& reason) {
    stopIfInterrupted();
    throw ToolError("cannot write " + target.string() + ": " + reason);
}

// Where libzip writes to: a file that has no name of its own yet.
class Output {
public:
    explicit Output(files::PendingFile& file) : file_(file) {}

    static zip_int64_t call(void* self, void* data, zip_uint64_t bytes, zip_source_cmd_t command) {
        return static_cast<Output*>(self)->answer(data, bytes, command);
    }

private:
    zip_int64_t failed(int kind, int reason) {
        zip_error_set(error_.get(), kind, reason);
        return -1;
    }
    zip_int64_t write(void* data, zip_uint64_t bytes) {
        const bool written =
            file_.write({static_cast<const uint8_t*>(data), static_cast<size_t>(bytes)});
        return written ? static_cast<zip_int64_t>(bytes) : failed(ZIP_ER_WRITE, errno);
    }
    zip_int64_t seek(void* data, zip_uint64_t bytes) {
        const auto* place = ZIP_SOURCE_GET_ARGS(zip_source_args_seek_t, data, bytes, error_.get());
        if (place == nullptr) {
            return -1;
        }
        const bool there = lseek(file_.descriptor(), place->offset, place->whence) >= 0;
        return there ? 0 : failed(ZIP_ER_SEEK, errno);
    }
    zip_int64_t answer(void* data, zip_uint64_t bytes, zip_source_cmd_t command) {
        switch (command) {
            case ZIP_SOURCE_SUPPORTS:
                return ZIP_SOURCE_SUPPORTS_WRITABLE;
            case ZIP_SOURCE_STAT:  // an archive that is not there yet
                return failed(ZIP_ER_READ, ENOENT);
            case ZIP_SOURCE_ERROR:
                return zip_error_to_data(error_.get(), data, bytes);
            case ZIP_SOURCE_WRITE:
                return write(data, bytes);
            case ZIP_SOURCE_SEEK_WRITE:
                return seek(data, bytes);
            case ZIP_SOURCE_TELL_WRITE:
                return lseek(file_.descriptor(), 0, SEEK_CUR);
            case ZIP_SOURCE_BEGIN_WRITE:
            case ZIP_SOURCE_COMMIT_WRITE:
            case ZIP_SOURCE_ROLLBACK_WRITE:
            case ZIP_SOURCE_REMOVE:
            case ZIP_SOURCE_CLOSE:
            case ZIP_SOURCE_FREE:
                return 0;
            default:
                return failed(ZIP_ER_OPNOTSUPP, 0);
        }
    }

    files::PendingFile& file_;
    ZipError error_;
};

Zip openZip(const fs::path& target, Output& output) {
    ZipError error;
    zip_source_t* source = zip_source_function_create(Output::call, &output, error.get());
    zip_t* zip =
        source == nullptr ? nullptr : zip_open_from_source(source, ZIP_CREATE, error.get());
    if (zip == nullptr) {
        zip_source_free(source);
        fail(target, error.text());
    }
    return Zip(zip);
}

// `file` outlives the zip, which reads its bytes when it is closed.
void addFile(const fs::path& target, zip_t* zip, const FileToPack& file) {
    zip_source_t* source = file.file.empty()
                               ? zip_source_buffer(zip, file.bytes.data(), file.bytes.size(), 0)
                               : zip_source_file(zip, file.file.c_str(), 0, -1);
    const zip_int64_t index =
        source == nullptr ? -1 : zip_file_add(zip, file.name.c_str(), source, ZIP_FL_ENC_GUESS);
    if (index < 0) {
        zip_source_free(source);
        fail(target, zip_strerror(zip));
    }
    const auto place = static_cast<zip_uint64_t>(index);
    if (zip_set_file_compression(zip, place, ZIP_CM_DEFAULT, 0) != 0 ||
        zip_file_set_dostime(zip, place, kTime, kDate, 0) != 0 ||
        zip_file_set_external_attributes(zip, place, 0, ZIP_OPSYS_UNIX, kAttributes) != 0) {
        fail(target, zip_strerror(zip));
    }
}

void writeZip(const fs::path& target, const std::vector<FileToPack>& files, Output& output) {
    Zip zip = openZip(target, output);
    for (const FileToPack& file : files) {
        addFile(target, zip.get(), file);
    }
    zip_register_cancel_callback_with_state(
        zip.get(), [](zip_t*, void*) { return interrupted() ? 1 : 0; }, nullptr, nullptr);
    if (zip_close(zip.get()) != 0) {
        fail(target, zip_strerror(zip.get()));
    }
    static_cast<void>(zip.release());
}

void checkWritten(const fs::path& target, const files::PendingFile& file) {
    try {
        PackReader pack(fs::path("/proc/self/fd") / std::to_string(file.descriptor()));
        for (const PackedFile& each : pack.files()) {
            pack.read(each);
        }
    } catch (const ToolError& error) {
        fail(target, std::string("what is packed changed meanwhile, or the disk is at fault: ") +
                         error.what());
    }
}

}  // namespace

void writePack(const fs::path& target, std::vector<FileToPack> files) {
    Manifest manifest;
    for (const FileToPack& file : files) {
        manifest[file.name] = file.sha256;
    }
    files.push_back({kManifestName, "", "", printManifest(manifest)});
    std::ranges::sort(files, {}, &FileToPack::name);
    checkOutput(target);
    fs::path place = target;
    files::PendingFile pending;
    if (!files::followLinks(place) || !pending.createBeside(place)) {
        fail(target, std::strerror(errno));
    }
    Output output(pending);
    writeZip(target, files, output);
    checkWritten(target, pending);
    stopIfInterrupted();
    if (!pending.finish() || !pending.commit(place)) {
        fail(target, std::strerror(errno));
    }
}

}  // namespace maker
