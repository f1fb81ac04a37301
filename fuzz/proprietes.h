#pragma once

#include <string>

#include "base/base.h"
#include "verifie/lecture_stricte.h"

/// What the base holds, but its name, exact: two bases that loaded the same are equal here.
std::string image(const Base& base);

/// Of file `f`, the strict reading holds what the run's reading put into `base`.
void verifier_strict(const topomine::CasLu& cas, topomine::Fichier f, const Base& base);

/// The guard lets pass what it says: as deep, and with as many attributes, as the tree that the
/// parser builds of it, and not more when the document is well-formed.
void verifier_garde(std::string texte);

/// What the neighbourhood queries find is where they say.
void verifier_questions(const Base& base);
