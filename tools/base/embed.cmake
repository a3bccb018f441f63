# Writes a C++ source that holds a file as maker::NAME, a std::span of its bytes; who uses it declares
# it so: cmake -DINPUT=... -DOUTPUT=... -DNAME=... -P embed.cmake
file(READ "${INPUT}" hex HEX)
string(REGEX REPLACE "([0-9a-f][0-9a-f])" "0x\\1," bytes "${hex}")
string(REGEX REPLACE "(................................................................................)" "\\1\n" bytes "${bytes}")
file(WRITE "${OUTPUT}" "#include <span>
namespace maker {
extern const std::span<const unsigned char> ${NAME};
static const unsigned char bytes[] = {
${bytes}};
const std::span<const unsigned char> ${NAME}(bytes);
}  // namespace maker
")
