#pragma once

namespace CLI {
class App;
}

// Each adds one sub-command, which does its work when the command line that names it is parsed.
// A command that cannot do its work throws Erreur.

void ajouter_table(CLI::App& app);
void ajouter_partage(CLI::App& app);
void ajouter_faux(CLI::App& app);
void ajouter_resume(CLI::App& app);
void ajouter_covariance(CLI::App& app);
void ajouter_voir(CLI::App& app);
/// statut: receives 0 when the cases are clean, 1 for warnings only, 2 for errors.
void ajouter_verifie(CLI::App& app, int& statut);
