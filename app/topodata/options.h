#pragma once

#include <CLI/CLI.hpp>
#include <cstdint>
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

/// Seeds are what srand48 takes of them: 32 bits.
constexpr std::int64_t graine_max = 4294967295;

/// Adds an option whose value is a decimal integer ("010" is ten) from min to max, read into an
/// integer or an optional one. Any other text is a usage error that names the limits.
template <class T>
CLI::Option* option_entier(CLI::App& commande, const std::string& nom,
                           const std::string& description, T& valeur, std::int64_t min,
                           std::int64_t max) {
  return commande
      .add_option_function<std::string>(
          nom,
          [&valeur](const std::string& texte) {
            const std::int64_t lu = *entier_long_strict(texte);
            if constexpr (requires { valeur.emplace(lu); })
              valeur.emplace(lu);
            else
              valeur = static_cast<T>(lu);
          },
          description)
      ->type_name("ENTIER")
      ->check([min, max](const std::string& texte) {
        const auto lu = entier_long_strict(texte);
        return lu && *lu >= min && *lu <= max
                   ? std::string()
                   : "attendu : un entier de " + std::to_string(min) + " a " + std::to_string(max);
      });
}

/// Adds an option whose value is a decimal number from 0 to max, `attendu` in the words of the
/// usage error that any other text is.
template <class T>
CLI::Option* option_reel(CLI::App& commande, const std::string& nom, const std::string& description,
                         T& valeur, double max, const std::string& attendu) {
  return commande
      .add_option_function<std::string>(
          nom, [&valeur](const std::string& texte) { valeur = *reel_strict(texte); }, description)
      ->type_name("REEL")
      ->check([max, attendu](const std::string& texte) {
        const auto lu = reel_strict(texte);
        return lu && *lu >= 0 && *lu <= max ? std::string() : "attendu : " + attendu;
      });
}

/// Adds an option that names a file to write. An empty name is a usage error.
inline CLI::Option* option_fichier(CLI::App& commande, const std::string& nom,
                                   const std::string& description, std::string& valeur) {
  return commande.add_option(nom, valeur, description)->check([](const std::string& texte) {
    return texte.empty() ? "attendu : un nom de fichier" : std::string();
  });
}

/// -o: without it, and with "-", the standard output.
inline CLI::Option* option_sortie(CLI::App& commande, std::string& valeur) {
  return option_fichier(commande, "-o,--sortie",
                        "Fichier a ecrire (- ou rien : la sortie standard)", valeur);
}

}  // namespace topomine
