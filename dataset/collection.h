#pragma once

#include <string>
#include <string_view>
#include <vector>

class BaseBuffer;

namespace topomine {

// A list of bases, of one collection or of several, and how they stay apart in one table.

inline constexpr const char* nom_collection = "collection";

/// Where the examples of one base come from.
struct Provenance {
  std::string collection;  ///< the collection's name in the table
  std::string chemin;      ///< its folder, ending in "/"
  std::string base;
  int numero = 0;  ///< "Num_Base"
};

/// Order of names in which numbers count by their value: "b_9" before "b_10".
bool ordre_naturel(std::string_view a, std::string_view b);

/// The sub-folders of a collection that hold their own NAME.def, in natural order.
std::vector<std::string> bases_presentes(const std::string& chemin);

/// A name per collection: its folder's, or its path as given where two folders have the same name.
std::vector<std::string> noms_des_collections(const std::vector<std::string>& chemins);

/// Gives each base its number: that of schema.h when there is one collection and all its names are
/// built in, otherwise the rank in the list, from 0.
void numeroter(std::vector<Provenance>& bases);

/// The nominal type that holds the numbers of a list: schema.h's, or as long as the list.
std::string type_num_base(const std::vector<Provenance>& bases);

/// Inserts an attribute `collection` first. A row gets the collection of its base; a row of no
/// listed base (synthetic) gets its base name. `ecrire` formats the value.
void ajouter_collection(BaseBuffer& table, const std::vector<Provenance>& bases,
                        std::string (*ecrire)(const std::string&));

}  // namespace topomine
