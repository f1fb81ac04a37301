#pragma once

#include <CLI/CLI.hpp>
#include <map>
#include <string>

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
