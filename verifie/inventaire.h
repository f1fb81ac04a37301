#pragma once

#include "verifie/lecture_stricte.h"

namespace topomine {

class DocumentXml;

/// What a reading passes over without a word: a second element of a name that is read once, an
/// element or a text that nothing asks for, an element within a comment.
void inventorier(CasLu& cas, Fichier f, const DocumentXml& doc);

}  // namespace topomine
