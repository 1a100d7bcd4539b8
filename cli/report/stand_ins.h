// Stable stand-ins for what a report must not tell: the same text has the same stand-in everywhere in a report.
//
// A stand-in has the length of its text. So it takes the text's place in a datagram or a line without moving what is
// behind it.
#ifndef TEMBRA_CLI_STAND_INS_H
#define TEMBRA_CLI_STAND_INS_H

#include <array>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace tembra::cli::report {

enum class Secret { kName, kPlace, kUser, kCode };

class StandIns {
 public:
  /// Words that every report has. A name or a place that is one of them, a single character or a number of up to three
  /// digits is replaced where it stands alone, and stays within texts: they would become unreadable. To be called
  /// first.
  void keepWordsOf(std::string_view text);

  /// From now on this text is replaced. Names that the library gives by itself ("Siren #4", "Default") are no secrets.
  void learn(Secret kind, const std::string& text);

  /// The MAC addresses that stand in a text: "02:a1:b2:0c:00:01", "02-A1-...", "02a1.b20c.0001",
  /// "02a1b20c0001", and bridge ids, "02a1b2fffe0c0001".
  void learnMacs(std::string_view text);

  /// The stand-in of a text that was learnt, or the text itself.
  [[nodiscard]] std::string of(const std::string& text) const;

  /// The text with stand-ins for what was learnt, short names only where they are a word.
  [[nodiscard]] std::string replaced(std::string_view text) const;

  /// The same for bytes that are no text: without short names, and with the bytes of MAC addresses.
  void replaceIn(char* bytes, std::size_t size) const;

 private:
  using Mac = std::array<unsigned char, 6>;
  struct Rule {
    std::string text;
    std::string standIn;
  };
  enum class Content { kText, kBytes };

  [[nodiscard]] bool isOfEveryReport(const std::string& text) const;
  void addRule(const std::string& text, const std::string& standIn, Content content = Content::kText);
  void learnMac(const Mac& mac);
  [[nodiscard]] const Rule* ruleAt(std::string_view text, std::size_t at, Content content) const;
  void replace(char* text, std::size_t size, Content content) const;

  std::set<std::string> ownWords_;  ///< in small letters
  std::map<std::string, std::string> standIns_;
  std::map<Mac, unsigned> macs_;
  std::array<std::vector<Rule>, 256> rules_;      ///< by their first byte, the longest first
  std::array<std::vector<Rule>, 256> byteRules_;  ///< for bytes that are no text
  unsigned counts_[4] = {};
};

}  // namespace tembra::cli::report

#endif
