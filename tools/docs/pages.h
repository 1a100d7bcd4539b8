// The pages that are made from the code's own tables. Each function returns whether it could write the file.
#ifndef TEMBRA_TOOLS_DOCS_PAGES_H
#define TEMBRA_TOOLS_DOCS_PAGES_H

#include <filesystem>

namespace docs {

[[nodiscard]] bool writeWireFormats(const std::filesystem::path& path);
[[nodiscard]] bool writeEvents(const std::filesystem::path& path);
[[nodiscard]] bool writeReasons(const std::filesystem::path& path);
[[nodiscard]] bool writeWiresharkTables(const std::filesystem::path& path);
[[nodiscard]] bool writeZigbeeRules(const std::filesystem::path& path);

}  // namespace docs

#endif
