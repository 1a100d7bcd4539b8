#include "limits/callgrind.h"

#include <cstdlib>
#include <fstream>
#include <stdexcept>

namespace limits {
namespace {

namespace fs = std::filesystem;

// The text behind a key at the line's start, or null.
const char* valueOf(const std::string& line, const char* key) {
  return line.starts_with(key) ? line.c_str() + std::char_traits<char>::length(key) : nullptr;
}

std::string fileName(const char* path) { return fs::path(path).filename(); }

// "0 123": of line 0, 123 instructions.
double costOf(const std::string& line) { return std::strtod(line.c_str() + line.find(' '), nullptr); }

bool isCost(const std::string& line) { return !line.empty() && line.front() >= '0' && line.front() <= '9'; }

// A folder that goes with the object.
class Folder {
 public:
  Folder() {
    std::string path = fs::temp_directory_path() / "tembra-callgrind-XXXXXX";
    if (mkdtemp(path.data()) == nullptr) throw std::runtime_error("there is no folder for the dumps");
    path_ = path;
  }
  ~Folder() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
  }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;
  [[nodiscard]] const fs::path& path() const { return path_; }

 private:
  fs::path path_;
};

}  // namespace

// A function's own cost stands on lines by themselves; behind each "calls=" there is the cost of calls that it made.
// "cob=" names the object of the function that is called when it is another one.
Dump::Dump(const fs::path& file, const std::string& library, const std::string& outside) {
  std::ifstream lines(file);
  std::string caller;
  std::string called;
  bool isCall = false;
  for (std::string line; std::getline(lines, line);) {
    if (const char* label = valueOf(line, "desc: Trigger: Client Request: ")) {
      const std::string text = label;
      job = text.substr(0, text.rfind('*'));
      times = std::atof(text.c_str() + text.rfind('*') + 1);
    } else if (const char* object = valueOf(line, "ob=")) {
      called = caller = fileName(object);
    } else if (const char* other = valueOf(line, "cob=")) {
      called = fileName(other);
    } else if (valueOf(line, "calls=") != nullptr) {
      isCall = true;
    } else if (isCost(line)) {
      const bool counts = caller == library && (!isCall || (called != library && called != outside));
      if (counts) instructions += costOf(line);
      isCall = false;
      called = caller;
    }
  }
}

std::map<std::string, double> instructionsOfJobs(const std::string& program, const std::string& library) {
  const Folder folder;
  std::string command = "LD_PRELOAD='" + library + "' LD_BIND_NOW=1 valgrind --tool=callgrind --quiet --fair-sched=try";
  command.append(" --compress-strings=no --compress-pos=no --callgrind-out-file='");
  command.append(folder.path() / "dump").append("' '").append(program).append("'");
  if (std::system(command.c_str()) != 0) throw std::runtime_error("callgrind or the program has failed: " + command);
  std::map<std::string, double> instructions;
  for (const fs::directory_entry& file : fs::directory_iterator(folder.path())) {
    const Dump dump(file.path(), fs::path(library).filename(), fs::path(program).filename());
    if (dump.times > 0) instructions[dump.job] = dump.instructions / dump.times;
  }
  return instructions;
}

}  // namespace limits
