// The plain sequence of Depot calls that every reader of the device database stands for, without any look at the file
// beforehand. Damage may crash it or keep it for ever, and so it runs in a child process.
#ifndef TEMBRA_TESTS_DATABASE_PLAIN_CALLS_H
#define TEMBRA_TESTS_DATABASE_PLAIN_CALLS_H

#include <functional>
#include <optional>
#include <string>

namespace plain {

// The readers, each of which tells its results as a text.
std::string knownNode(unsigned char node);
std::string removal(unsigned char node);
std::string zigbeeRemoval(unsigned address);
std::string nextId(int before);
std::string bridgeList();

/// The value of each key of this list (one a line) that can be read from the file.
std::string valuesOf(const std::string& keys);

/// What the reader told, or nothing when its process crashed, ran for long or wrote a huge file.
std::optional<std::string> inChild(const std::function<std::string()>& reader);

}  // namespace plain

#endif
