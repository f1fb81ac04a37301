#pragma once

#include "verifie/lecture_stricte.h"

class TiXmlDocument;

namespace topomine {

/// What a reading passes over without a word: a second element of a name that is read once, an
/// element or a text that nothing asks for, an element within a comment.
void inventorier(CasLu& cas, Fichier f, const TiXmlDocument& doc);

}  // namespace topomine
