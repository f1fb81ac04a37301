#pragma once

#include <array>
#include <cstddef>
#include <iosfwd>
#include <set>
#include <string>
#include <vector>

#include "verifie/catalogue.h"

namespace topomine {

/// Which findings count, and how many of a kind are written one by one.
struct Choix {
  std::set<Code> ignores;
  std::set<Gravite> gravites{Gravite::avis, Gravite::avertissement, Gravite::erreur};
  bool tout = false;  ///< no grouping

  bool garde(const Constat& c) const {
    return !ignores.contains(c.code) && gravites.contains(fiche(c.code).gravite);
  }
};

/// Where the findings of `verifie` go, and what there was to look at.
class Rapport {
 public:
  Rapport(std::ostream& out, const Choix& choix) : out_(out), choix_(choix) {}
  Rapport(const Rapport&) = delete;
  Rapport& operator=(const Rapport&) = delete;
  virtual ~Rapport() = default;

  /// The findings of one base, by file and line.
  void ajouter(std::vector<Constat> constats);
  /// After the last of them.
  virtual void finir() {}

  std::size_t nb(Gravite g) const { return nb_[static_cast<std::size_t>(g)]; }
  /// 2 for errors, 1 for warnings, 0 for notices or nothing.
  int statut() const;

 protected:
  virtual void ecrire(const std::vector<Constat>& constats) = 0;

  std::ostream& out_;
  const Choix& choix_;

 private:
  std::array<std::size_t, 3> nb_{};
};

/// file:line: kind number: what; what to do about it [how bad] [code]
/// Of one kind in one file, three and a line on the others, unless all are wanted.
class RapportTexte final : public Rapport {
 public:
  using Rapport::Rapport;

 private:
  void ecrire(const std::vector<Constat>& constats) override;
};

/// A JSON array, one object per finding and line, in UTF-8.
class RapportJson final : public Rapport {
 public:
  using Rapport::Rapport;
  void finir() override;

 private:
  void ecrire(const std::vector<Constat>& constats) override;
  bool vide_ = true;
};

}  // namespace topomine
