#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace topomine {

/// Writes what may stand in the place of the last of `mots` (the words after the program's name),
/// one per line, for the shells' completion: commands, options, words, names of bases in the folder
/// that the line names, attributes. Where names of files or folders are wanted, ":fichiers" or
/// ":dossiers" alone: shells know those better.
void proposer(const CLI::App& app, const std::vector<std::string>& mots, std::ostream& out);

}  // namespace topomine
