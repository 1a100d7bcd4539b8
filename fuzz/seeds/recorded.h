// Seeds out of a recording: what the servers said then.
#ifndef TEMBRA_FUZZ_SEEDS_RECORDED_H
#define TEMBRA_FUZZ_SEEDS_RECORDED_H

#include <filesystem>

namespace fuzz {

/// Writes seeds of the targets session, node, zigbee and hue into folders of their names. Names, codes and users that
/// the front end sent are left out; what the servers said stands there as it is. Throws one sentence.
void writeRecorded(const std::filesystem::path& recording, const std::filesystem::path& out);

}  // namespace fuzz

#endif
