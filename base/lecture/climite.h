#pragma once

#include <cstddef>
#include <cstdint>
#include <exception>
#include <string_view>
#include <vector>

namespace topomine {

class Journal;

/// Limit, in bytes, on all rows of one climite.cfg together. A short row counts as completed; a
/// field counts as the length of its column's name, that of its text, and 100.
inline constexpr std::int64_t configuration_max = std::int64_t{64} << 20;

struct ClimiteFautif : std::exception {};
struct ClimiteDemesure : std::exception {};

/// The lines of a climite.cfg, one after the other: the header, then the rows.
class LignesClimite {
 public:
  explicit LignesClimite(std::string_view texte) : reste_(texte) {}

  /// Takes the next line; false when there is none left.
  bool suivante();

  int numero() const { return numero_; }  ///< 0 before the first line, 1 for the header
  /// It ends with a newline. One that does not, the last, does not count in a run.
  bool finie() const { return finie_; }
  /// Nothing in it but blanks.
  bool blanche() const { return blanche_; }
  /// Its last field has its ";": only blanks and a carriage return may follow.
  bool terminee() const { return terminee_; }
  /// What is before each ";", without the blanks at its start. They stand in the file's text.
  const std::vector<std::string_view>& champs() const { return champs_; }
  /// The rows so far take more than configuration_max.
  bool demesure() const { return octets_ > configuration_max; }
  /// Counts the row that has been taken.
  void compter();

 private:
  std::string_view reste_;
  int numero_ = 0;
  bool finie_ = false, blanche_ = false, terminee_ = false;
  std::vector<std::string_view> champs_;
  std::vector<std::size_t> tailles_;  // of the texts that the columns hold
  std::int64_t octets_rangee_ = 0;
  std::int64_t octets_ = 0;
};

/// Reads the text of a climite.cfg into Base::list_attr and Base::list_CLim. False, after having
/// told the journal, when there is no complete header line; throws ClimiteFautif on a line that
/// lacks its last ";" or has more fields than the header, ClimiteDemesure on rows that take too
/// much.
bool parcourir_climite(std::string_view texte, Journal& journal);

}  // namespace topomine
