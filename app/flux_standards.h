#pragma once

namespace topomine {

/// Gives the process the three standard streams that it was started without: a file opened later
/// would take the place of a closed one, and the messages would be written into it. A reader of
/// them that goes away does not end the process either, nor does a file that grows beyond its
/// limit: both are writes that fail. To be called first.
void assurer_flux_standards();

/// Whether the process was started without this stream.
bool flux_etait_ferme(int flux);

}  // namespace topomine
