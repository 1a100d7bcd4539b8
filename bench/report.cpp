#include "report.h"

#include <sys/utsname.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <map>
#include <nlohmann/json.hpp>
#include <thread>

namespace bench {
namespace {

using nlohmann::json;

constexpr std::array<const char*, 6> kUnits{"ns", "us", "ms", "/s", "KiB", ""};

const char* nameOf(Unit unit) { return kUnits.at(static_cast<std::size_t>(unit)); }

std::string number(double value, const char* after = "") {
  char text[64];
  const int decimals = value >= 1000 ? 0 : value >= 10 ? 1 : 2;
  std::snprintf(text, sizeof text, "%.*f%s", value == 0 ? 0 : decimals, value, after);
  return text;
}

std::string withUnit(double value, Unit unit) {
  std::string text = number(value);
  if (*nameOf(unit) != '\0') text.append(" ").append(nameOf(unit));
  return text;
}

std::string goalOf(const Figure& figure) {
  std::string goal;
  const auto add = [&goal](const std::string& part) { goal.append(goal.empty() ? "" : ", ").append(part); };
  if (figure.mostRatio) add("<= " + number(*figure.mostRatio, " x"));
  if (figure.leastRatio) add(">= " + number(*figure.leastRatio, " x"));
  if (figure.most) add("<= " + withUnit(*figure.most, figure.unit));
  if (figure.least) add(">= " + withUnit(*figure.least, figure.unit));
  return goal;
}

void printLine(const Figure& figure) {
  const std::string limit = figure.limit ? withUnit(*figure.limit, figure.unit) : "";
  const std::string ratio = figure.hasRatio() ? number(figure.ratio(), " x") : "";
  const char* met = !figure.hasGoal() ? "" : figure.isMet() ? "met" : "NOT MET";
  std::printf("%2d  %-58s %14s %14s %8s  %-24s %s\n", figure.number, figure.what.c_str(),
              withUnit(figure.value, figure.unit).c_str(), limit.c_str(), ratio.c_str(), goalOf(figure).c_str(), met);
}

json jsonOf(const Figure& figure) {
  json line = {
      {"number", figure.number}, {"figure", figure.what}, {"unit", nameOf(figure.unit)}, {"value", figure.value}};
  if (figure.limit) line["limit"] = *figure.limit;
  if (figure.hasRatio()) line["ratio"] = figure.ratio();
  if (figure.hasGoal()) {
    line["goal"] = goalOf(figure);
    line["met"] = figure.isMet();
  }
  return line;
}

std::string processor() {
  std::ifstream file("/proc/cpuinfo");
  const std::string name = "model name\t: ";
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with(name)) return line.substr(name.size());
  }
  return "unknown";
}

std::string system() {
  utsname names{};
  uname(&names);
  return std::string(names.sysname) + " " + names.release;
}

std::string machine() {
  return processor() + ", " + std::to_string(std::thread::hardware_concurrency()) + " cores, " + system();
}

std::string fileNameOf(std::string lookUp) {
  std::replace(lookUp.begin(), lookUp.end(), ' ', '-');
  return lookUp + ".dat";
}

}  // namespace

bool Figure::isMet() const {
  // Not by the ratio: a limit that is a difference of two times may be nothing, or less.
  return (!mostRatio || value <= *mostRatio * *limit) && (!leastRatio || value >= *leastRatio * *limit) &&
         (!most || value <= *most) && (!least || value >= *least);
}

std::vector<CurvePoint> Report::curveOf(const std::string& lookUp) const {
  std::vector<CurvePoint> curve;
  std::copy_if(curve_.begin(), curve_.end(), std::back_inserter(curve),
               [&lookUp](const CurvePoint& point) { return point.lookUp == lookUp; });
  return curve;
}

void Report::sort() {
  std::stable_sort(figures_.begin(), figures_.end(),
                   [](const Figure& left, const Figure& right) { return left.number < right.number; });
}

void Report::print() const {
  std::printf("%s\n\n", machine().c_str());
  std::printf("%2s  %-58s %14s %14s %8s  %-24s\n", "#", "figure", "measured", "limit", "ratio", "goal");
  for (const Figure& figure : figures_) printLine(figure);
}

void Report::write(const std::filesystem::path& folder, bool isShort) const {
  std::filesystem::create_directories(folder);
  json document = {{"machine", machine()}, {"short", isShort}, {"figures", json::array()}};
  for (const Figure& figure : figures_) document["figures"].push_back(jsonOf(figure));
  std::map<std::string, std::string> columns;
  for (const CurvePoint& point : curve_) {
    document["curves"][point.lookUp].push_back(
        {{"devices", point.devices}, {"library", point.library}, {"bare", point.bare}});
    std::string& text = columns[point.lookUp];
    text.append(std::to_string(point.devices)).append(" ").append(std::to_string(point.library * 1e3));
    text.append(" ").append(std::to_string(point.bare * 1e3)).append("\n");
  }
  std::ofstream(folder / "latest.json") << document.dump(2) << '\n';
  for (const auto& [lookUp, text] : columns) std::ofstream(folder / fileNameOf(lookUp)) << text;
}

}  // namespace bench
