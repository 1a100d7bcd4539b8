#include "holder_line.h"

#include "json_scan.h"

namespace tembra::frontend {
namespace {

std::string jsonText(std::string_view text) {
  std::string quoted = "\"";
  for (const char c : text) {
    const bool plain = c >= ' ' && c <= '~';
    if (c == '"' || c == '\\') quoted += '\\';
    quoted += plain ? c : '?';
  }
  return quoted + '"';
}

}  // namespace

std::string holderLine(const Holder& holder, std::string_view state) {
  std::string line = R"({"schema":1,"holder":{"role":)" + std::to_string(holder.role);
  line += R"(,"program":)" + jsonText(holder.program);
  line += R"(,"pid":)" + std::to_string(holder.pid);
  line += R"(,"since":)" + std::to_string(holder.since);
  return line.append(R"(},"state":)").append(state) + '}';
}

std::string errorLine(std::string_view what) { return R"({"schema":1,"error":)" + jsonText(what) + '}'; }

bool readHolderLine(std::string_view line, HolderReport& report) {
  long long role = 0;
  const bool read = scanJson(line, {
                                       {"/holder/role", &role},
                                       {"/holder/program", &report.holder.program},
                                       {"/holder/pid", &report.holder.pid},
                                       {"/holder/since", &report.holder.since},
                                       {"/state/operation", &report.operation},
                                       {"/state/phase", &report.phase},
                                       {"/error", &report.error},
                                   });
  report.holder.role = role >= 0 && role < 256 ? static_cast<int>(role) : 0;
  return read;
}

}  // namespace tembra::frontend
