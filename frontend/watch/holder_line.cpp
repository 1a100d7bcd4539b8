#include "holder_line.h"

#include "json.h"
#include "json_scan.h"

namespace tembra::frontend {
namespace {

constexpr int kSchema = 1;

}  // namespace

std::string holderLine(const Holder& holder, std::string_view state) {
  JsonWriter json;
  json.begin("", '{').member("schema", kSchema).begin("holder", '{');
  json.member("role", holder.role).member("program", holder.program);
  json.member("pid", holder.pid).member("since", holder.since).end('}');
  return std::string(json.text()).append(",\"state\":").append(state) + '}';
}

std::string errorLine(std::string_view what) {
  JsonWriter json;
  return json.begin("", '{').member("schema", kSchema).member("error", what).end('}').text();
}

std::string historyLine(unsigned long long last) {
  JsonWriter json;
  json.begin("", '{').member("schema", kSchema).member("history", static_cast<long long>(last));
  return json.end('}').text();
}

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
