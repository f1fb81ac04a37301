#pragma once

#include <CLI/CLI.hpp>
#include <map>
#include <string>

#include "texte/nombres.h"

namespace topomine {

/// Adds an option whose value is one of the words of `mots`, read into `valeur` as what the word
/// stands for. Any other text is a usage error that lists the words.
template <class T>
CLI::Option* option_mot(CLI::App& commande, const std::string& nom, const std::string& description,
                        const std::map<std::string, T>& mots, T& valeur) {
  return commande
      .add_option_function<std::string>(
          nom, [mots, &valeur](const std::string& mot) { valeur = mots.at(mot); }, description)
      ->check(CLI::IsMember(mots));
}

/// What an option's number must be: wholly a number, from 0 to `max`.
inline auto reel_jusqu_a(double max, const std::string& attendu) {
  return [max, attendu](const std::string& texte) {
    const auto v = reel_strict(texte);
    return v && *v >= 0 && *v <= max ? std::string() : "attendu : " + attendu;
  };
}

inline std::string entier_naturel(const std::string& texte) {
  const auto v = entier_strict(texte);
  return v && *v >= 0 ? std::string() : "attendu : un entier, 0 ou plus";
}

}  // namespace topomine
