#include "app/topodata/sortie.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>

#include "app/topodata/console.h"
#include "app/topodata/provisoire.h"

namespace topomine {

Sortie::Sortie(const std::string& nom)
    : nom_(nom == "-" ? "" : nom),
      endroit_(trouver_endroit(nom)),
      tampon_(ouvrir()),
      flux_(&tampon_) {}

Sortie::~Sortie() {
  if (!provisoire_) tampon_.pubsync();  // output to a stream or device cannot be undone: flush it
}

int Sortie::ouvrir() {
  if (const auto fichier = endroit_.identite()) {
    const std::string qui = nom_.empty() ? "sortie standard" : "'" + nom_ + "'";
    if (est_une_entree(*fichier))
      throw Erreur(qui + " : fichier des cas, ou que la commande lit ; elle ne peut pas l'ecrire");
    if (!inscription_.inscrire(*fichier))
      throw Erreur(qui + " : une autre sortie de la commande est ce meme fichier");
  }
  if (endroit_.flux >= 0) {
    if (!flux_recu(endroit_.flux)) echouer(EBADF);
    ouvert_ = Descripteur(fcntl(endroit_.flux, F_DUPFD_CLOEXEC, 0));
    if (!ouvert_) echouer(errno);
    if ((fcntl(ouvert_.numero(), F_GETFL) & O_ACCMODE) == O_RDONLY) echouer(EBADF);
    return ouvert_.numero();
  }
  namespace fs = std::filesystem;
  if (endroit_.boucle) echouer(ELOOP);
  std::error_code erreur;
  const fs::file_status etat = fs::status(endroit_.nom, erreur);
  if (fs::is_directory(etat) || nom_.ends_with('/')) echouer(EISDIR);
  if (fs::exists(etat) && !fs::is_regular_file(etat)) {
    ouvert_ = Descripteur(open(endroit_.nom.c_str(), O_WRONLY | O_NOCTTY | O_CLOEXEC));
    if (!ouvert_) echouer(errno);
    return ouvert_.numero();
  }
  if (fs::exists(etat) && access(endroit_.nom.c_str(), W_OK) != 0) echouer(errno);
  try {
    provisoire_ = std::make_unique<Provisoire>(endroit_.nom);
  } catch (const std::system_error& e) {
    echouer(e.code().value());
  }
  return provisoire_->descripteur();
}

void Sortie::echouer(int erreur) const {
  throw Erreur((nom_.empty() ? "sortie standard" : nom_) + " : ecriture impossible (" +
               std::strerror(erreur) + ")");
}

void Sortie::fermer() {
  if (ferme_) return;
  ferme_ = true;
  flux_.flush();
  if (tampon_.erreur() != 0) echouer(tampon_.erreur());
  if (!flux_.good()) echouer(EIO);
  // Some file systems report a full disk only on close; a duplicate is closed, as this one is still
  // needed.
  const int copie = dup(provisoire_ ? provisoire_->descripteur() : ouvert_.numero());
  if (copie >= 0 && close(copie) != 0) echouer(errno);
}

void Sortie::conclure() {
  fermer();
  if (!provisoire_) return;
  bool garde = true;
  try {
    garde = provisoire_->placer();
  } catch (const std::system_error& e) {
    echouer(e.code().value());
  }
  provisoire_.reset();
  if (!garde) dire("attention : " + nom_ + " a change de proprietaire ou de groupe");
}

void lister(const std::function<void(std::ostream&)>& remplir) {
  Sortie sortie("");
  {
    TamponLecteur tampon(sortie.flux());
    std::ostream listing(&tampon);
    remplir(listing);
  }
  sortie.conclure();
}

}  // namespace topomine
