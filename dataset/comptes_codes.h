#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <unordered_map>
#include <vector>

#include "base/base.h"
#include "dataset/schema.h"

namespace topomine {

/// How often each BCCODE that has a column is seen by a block, as Base::DAM2BCCODE translates the
/// codes of Base::BC_blk_face and Base::BC_blk_edge, without a copy of these lists: what a long
/// list of codes does to the counts is worked out once and used by all the blocks that see it.
class ComptesCodes {
 public:
  /// Occurrences, in the order of codes_comptes.
  using Comptes = std::array<std::int64_t, codes_comptes.size()>;

  explicit ComptesCodes(const Base& base) : base_(base) {}

  /// Throw std::length_error when the configuration has texts that cannot be counted by parts and
  /// the base has too many of them read.
  Comptes faces(const Block& bloc);
  Comptes edges(const Block& bloc);

 private:
  /// What one code does to the reading of a list.
  struct Code {
    /// Of what its text leaves unread. aucun: there is nothing. fin: it stops every read after it.
    /// melange: it becomes part of the next number.
    enum Effet { aucun, fin, melange } effet = aucun;
    std::optional<int> valeur;  ///< without it the previous number counts again
  };
  /// What a list of codes does to the counts, whatever was read before it.
  struct Effets {
    Comptes comptes{};
    std::int64_t nb = 0;        ///< codes in the list
    std::int64_t repetes = 0;   ///< at its head: they repeat the number from before the list
    std::optional<int> valeur;  ///< the last number
    bool fin = false;           ///< nothing is read any more
    bool melange = false;       ///< the list has to be read text by text
  };

  Code classer(int code);
  void ajouter_code(Effets& e, int code);
  void repeter(Effets& e, std::int64_t fois) const;
  void enchainer(Effets& e, const Effets& suite) const;
  template <class Entite>
  void ajouter_codes(Effets& e, int numero, const Entite& entite,
                     std::unordered_map<int, Effets>& longs);
  void ajouter_edges(Effets& e, const Face& face);
  void compter_lus(std::int64_t octets);
  Comptes lire_textes(const std::vector<int>& codes);

  const Base& base_;
  std::unordered_map<int, Code> codes_;
  /// By number, for the entities that are long to go through.
  std::unordered_map<int, Effets> faces_, edges_, edges_de_face_;
  std::int64_t octets_lus_ = 0;
};

}  // namespace topomine
