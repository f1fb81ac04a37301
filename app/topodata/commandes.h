#pragma once

namespace CLI {
class App;
}

namespace topomine {

// Each adds one sub-command, which does its work when the command line that names it is parsed.
// A command that cannot do its work throws Erreur; one that has a status of its own writes it.

using AjouterCommande = void (*)(CLI::App& app, int& statut);

void ajouter_table(CLI::App& app, int& statut);
void ajouter_partage(CLI::App& app, int& statut);
void ajouter_faux(CLI::App& app, int& statut);
void ajouter_attributs(CLI::App& app, int& statut);
void ajouter_resume(CLI::App& app, int& statut);
void ajouter_covariance(CLI::App& app, int& statut);
void ajouter_importe(CLI::App& app, int& statut);
void ajouter_voir(CLI::App& app, int& statut);
void ajouter_exporte(CLI::App& app, int& statut);
void ajouter_dessine(CLI::App& app, int& statut);
/// statut: 0 when the cases are clean, 1 for warnings only, 2 for errors.
void ajouter_verifie(CLI::App& app, int& statut);

/// Runs one command line: the exit status, after a line on standard error when it is not 0.
int executer_topodata(int argc, char** argv);

}  // namespace topomine
