#include <gtest/gtest.h>
#include <linux/capability.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <sstream>

#include "app/topodata/depot.h"
#include "app/topodata/sortie.h"
#include "tests/topodata/programme.h"

using namespace topomine;

namespace fs = std::filesystem;

namespace {

/// From here on the system has no files without a name.
void sans_fichiers_anonymes() {
  constexpr auto drapeaux = static_cast<std::uint32_t>(offsetof(seccomp_data, args) + 2 * 8);
  constexpr std::uint32_t anonyme = O_TMPFILE & ~O_DIRECTORY;
  sock_filter filtre[]{
      BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_openat, 0, 3),
      BPF_STMT(BPF_LD | BPF_W | BPF_ABS, drapeaux),
      BPF_JUMP(BPF_JMP | BPF_JSET | BPF_K, anonyme, 0, 1),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EOPNOTSUPP),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
  };
  sock_fprog programme{static_cast<unsigned short>(std::size(filtre)), filtre};
  if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 ||
      prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &programme) != 0)
    _exit(126);
}

/// From here on no two files change places at once.
void sans_echange() {
  sock_filter filtre[]{
      BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_renameat2, 0, 1),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EINVAL),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
  };
  sock_fprog programme{static_cast<unsigned short>(std::size(filtre)), filtre};
  if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 ||
      prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &programme) != 0)
    _exit(126);
}

/// What an ordinary user may not do, root may not do either after this.
void sans_privilege(int capacite) {
  prctl(PR_CAPBSET_DROP, capacite, 0, 0, 0);
}

/// A script in the folder of the collection: "u" is a resume of a base, "p" the program.
Resultat par_le_shell(
    const Collection& c, const std::string& script, const std::function<void()>& preparer = [] {}) {
  return lancer("/bin/sh", c.dossier.string(),
                {"-c",
                 "export GCOV_PREFIX=/dev/null; p=$0; u() { $p resume cas nrm --bases mesh_case_1 "
                 "\"$@\"; }; " +
                     script,
                 TOPODATA_PROGRAM},
                preparer);
}

}  // namespace

TEST(Fichiers, AreWrittenWhateverTheirNameAndTheUsersSettings) {
  const Collection c;
  const std::string resume = par_le_shell(c, "u").sortie;
  const struct {
    std::string script, contenu;  // of the file f; R is what resume writes
  } rangees[]{
      {"(echo a; u -o /dev/stdout; echo b) > f", "a\nRb\n"},
      {"echo a > f; u -o /proc/self/fd/1 >> f", "a\nR"},
      {"echo a > f; ln -s /dev/stdout l; u -o l >> f", "a\nR"},
      {"exec 7> f; echo a >&7; u -o /dev/fd/7; echo b >&7", "a\nRb\n"},
      {"u -o - > f", "R"},
      {"umask 0222; u -o f", "R"},
      {"umask 0777; u -o f; chmod 400 f", "R"},
      {"n=$(printf %0255d 1); u -o $n; u -o $n; mv $n f", "R"},
      {"mkfifo l; cat l > f & u -o l; wait", "R"},
      {"echo long > f; ln -s f l; ln -s l m; u -o m; test -L m && test -L l", "R"},
      // Another has the name that the new file would have at first.
      {"sh -c 'touch .topodata-$$-1; echo a > f; exec $0 resume cas nrm --bases mesh_case_1 -o f' "
       "$p; rm .topodata-*-1",
       "R"},
  };
  for (const auto prepare : {+[] {}, +[] { sans_fichiers_anonymes(); }})
    for (const auto& r : rangees) {
      const Resultat fait = par_le_shell(c, r.script, [&] {
        sans_privilege(CAP_DAC_OVERRIDE);
        prepare();
      });
      EXPECT_EQ(fait.statut, 0) << r.script << fait.erreur;
      EXPECT_EQ(fait.sortie + fait.erreur, "") << r.script;
      std::string attendu = r.contenu;
      attendu.replace(attendu.find('R'), 1, resume);
      EXPECT_EQ(lire(c.dossier / "f"), attendu) << r.script;
      EXPECT_EQ(par_le_shell(c, "rm -f f l m; ls -A").sortie, "cas\n") << r.script;
    }
}

TEST(Fichiers, ThatCannotBeWrittenAreSaidAndNothingChanges) {
  const Collection c;
  const std::string sans_flux = " : ecriture impossible (Bad file descriptor)";
  const std::string lu = " : fichier des cas, ou que la commande lit ; elle ne peut pas l'ecrire";
  const std::string double_ = " : une autre sortie de la commande est ce meme fichier";
  const struct {
    std::string script, dit;
  } rangees[]{
      {"u >&-", "sortie standard" + sans_flux},
      {"u -o /dev/stdout >&-", "/dev/stdout" + sans_flux},
      {"u -o /dev/fd/7", "/dev/fd/7" + sans_flux},
      {"u -o /dev/fd/7 7< /dev/null", "/dev/fd/7" + sans_flux},
      {"$p --help >&-", "sortie standard" + sans_flux},
      {"$p table --help > /dev/full",
       "sortie standard : ecriture impossible (No space left on device)"},
      {"$p voir cas nrm mesh_case_1/ > /dev/full",
       "sortie standard : ecriture impossible (No space left on device)"},
      {"$p verifie cas nrm >&-", "sortie standard" + sans_flux},
      {"u -o cas/climite.cfg", "'cas/climite.cfg'" + lu},
      {"u -o cas/mesh_case_2/../mesh_case_1/mesh_case_1_ext.face",
       "'cas/mesh_case_2/../mesh_case_1/mesh_case_1_ext.face'" + lu},
      {"u -o cas/mesh_case_8/mesh_case_8_nrm.blck", "'cas/mesh_case_8/mesh_case_8_nrm.blck'" + lu},
      {"ln -s cas/climite.cfg l; u -o l", "'l'" + lu},
      {"ln cas/mesh_case_1/mesh_case_1.def l; u -o l", "'l'" + lu},
      {"u >> cas/climite.cfg", "sortie standard" + lu},
      {"$p covariance cas nrm -o z.png --image ./z.png", "'z.png'" + double_},
      {"ln -s z.png l; $p covariance cas nrm -o l --image z.png", "'l'" + double_},
      {"ln -s f_1.arff f_2.arff; $p partage cas nrm --ratio .5 -o f", "'f_2.arff'" + double_},
      {"$p partage cas nrm --ratio .5 -o -",
       "partage ecrit plusieurs fichiers : -o y donne le debut de leurs noms"},
      {"u -o n$(printf %0255d 1) 2>&1 | tail -c 23 >&2; false", "(File name too long)"},
      {"mkdir l; u -o l/", "l/ : ecriture impossible (Is a directory)"},
      {"u -o absent/f", "absent/f : ecriture impossible (No such file or directory)"},
      {"ulimit -f 1; $p table cas nrm -o f", "f : ecriture impossible (File too large)"},
  };
  const std::string avant = par_le_shell(c, "cat cas/*.cfg cas/*/*").sortie;
  for (const auto& r : rangees) {
    const Resultat fait = par_le_shell(c, r.script);
    EXPECT_TRUE(fait.erreur.ends_with(r.dit + "\n")) << r.script << '\n' << fait.erreur;
    EXPECT_EQ(fait.sortie, "");
    EXPECT_NE(fait.statut, 0);
    EXPECT_EQ(par_le_shell(c, "rm -rf l f_2.arff; ls -A").sortie, "cas\n") << r.script;
  }
  EXPECT_EQ(par_le_shell(c, "cat cas/*.cfg cas/*/*").sortie, avant);
}

TEST(Fichiers, OfAFolderAreNotWrittenOverByMakeCases) {
  const Dossier d;
  d.ecrire("mien/climite.cfg", "mien");
  const auto faire = [&](std::vector<std::string> mots) {
    mots.insert(mots.begin(), {"mien", "--blocs", "8"});
    const Resultat r = lancer(MAKE_CASES_PROGRAM, d.chemin(), mots);
    return r.erreur + std::to_string(r.statut);
  };
  EXPECT_EQ(faire({}),
            "make_cases : mien n'est pas vide ; --force ecrit par-dessus ce qui s'y trouve\n1");
  EXPECT_EQ(d.lire("mien/climite.cfg"), "mien");
  for (const char* refuse : {"0x10", "7", "99999999999999999999"})
    EXPECT_TRUE(faire({"--force", "--blocs", refuse})
                    .starts_with("make_cases : --blocs attend un entier de 8 a 1000000, pas '" +
                                 std::string(refuse) + "'\n"));
  EXPECT_EQ(faire({"--force", "--blocs", "010"}), "0");
  EXPECT_NE(d.lire("mien/climite.cfg"), "mien");
}

namespace {

/// Puts a folder with one file, x, in place, in a process of its own after `preparer`, with `entre`
/// just before it comes there: its status, 1 and a file of that name and ".dit" when it fails.
int deposer(
    const std::string& dossier, bool remplace, const char* texte,
    const std::function<void()>& preparer, const std::function<void()>& entre = [] {}) {
  const pid_t fils = fork();
  if (fils == 0) {
    preparer();
    try {
      Depot depot(dossier, remplace);
      depot.ecrire("x", [&](std::ostream& x) { x << texte; });
      depot.preparer();
      entre();
      depot.publier();
    } catch (const Erreur& e) {
      ecrire(dossier + ".dit", e.what());
      _exit(1);
    }
    _exit(0);
  }
  int etat = -1;
  waitpid(fils, &etat, 0);
  return WIFEXITED(etat) ? WEXITSTATUS(etat) : -1;
}

}  // namespace

TEST(Fichiers, OfAFolderComeWhateverTheMask) {
  const Dossier d;
  EXPECT_EQ(deposer(d.chemin() + "n", false, "y",
                    [&] {
                      constexpr uid_t personne = 65534;
                      if (geteuid() == 0 && (chown(d.chemin().c_str(), personne, personne) != 0 ||
                                             setuid(personne) != 0))
                        _exit(126);
                      umask(0222);
                    }),
            0);
  EXPECT_EQ(d.lire("n/x"), "y");
  EXPECT_EQ(fs::status(d.chemin() + "n").permissions(), fs::perms(0555));
  fs::permissions(d.chemin() + "n", fs::perms(0755));
}

TEST(Fichiers, OfAFolderReplaceThoseOfItsNameOnly) {
  for (const auto preparer : {+[] {}, +[] { sans_echange(); }}) {
    const Dossier d;
    d.ecrire("n/x", "vieux");
    d.ecrire("n/z", "reste");
    EXPECT_EQ(deposer(d.chemin() + "n", true, "neuf", preparer), 0);
    EXPECT_EQ(d.lire("n/x") + d.lire("n/z"), "neufreste");
    EXPECT_EQ(std::distance(fs::directory_iterator(d.chemin()), {}), 1);
    EXPECT_EQ(std::distance(fs::directory_iterator(d.chemin() + "n"), {}), 2);
  }
}

TEST(Fichiers, OfAFolderStayWhenTheNewOneCannotComeThere) {
  const struct {
    bool ancien, remplace;  // what is there before, what the command was told
    void (*preparer)();
    const char* disparait;  // in the meantime
    std::string reste;
  } rangees[]{
      {true, true, sans_echange, ".n.", "vieux"},
      {true, true, sans_echange, "n", ""},
      {false, false, [] {}, ".n.", ""},
  };
  for (const auto& r : rangees) {
    const Dossier d;
    if (r.ancien) d.ecrire("n/x", "vieux");
    EXPECT_EQ(deposer(d.chemin() + "n", r.remplace, "neuf", r.preparer,
                      [&] {
                        const fs::directory_iterator ici(d.chemin());
                        const std::vector<fs::path> la(begin(ici), end(ici));
                        for (const auto& chemin : la)
                          if (chemin.filename().string().starts_with(r.disparait))
                            fs::remove_all(chemin);
                      }),
              1);
    EXPECT_EQ(d.lire("n.dit"), d.chemin() + "n : ecriture impossible (No such file or directory)");
    EXPECT_EQ(fs::exists(d.chemin() + "n/x") ? d.lire("n/x") : "", r.reste);
    EXPECT_EQ(std::distance(fs::directory_iterator(d.chemin()), {}), r.reste.empty() ? 1 : 2);
  }
  const Dossier d;
  EXPECT_THROW(Depot(d.chemin() + "absent/n", false), Erreur);
}

TEST(Fichiers, KeepTheirOwnerWhereTheyMay) {
  if (geteuid() != 0) GTEST_SKIP() << "only root gives files away";
  const Collection c;
  const auto f = c.dossier / "f";
  const auto remplacer = [&](mode_t droits, int sans) {
    ecrire(f, "vieux");
    if (chown(f.c_str(), 1234, 5678) != 0 || chmod(f.c_str(), droits) != 0) std::abort();
    const std::string dit = par_le_shell(c, "u -o f", [&] {
                              if (sans >= 0) sans_privilege(sans);
                            }).erreur;
    struct stat etat {};
    stat(f.c_str(), &etat);
    std::ostringstream texte;
    texte << etat.st_uid << ' ' << etat.st_gid << ' ' << std::oct << etat.st_mode << ' ' << dit;
    return texte.str();
  };
  EXPECT_EQ(remplacer(06750, -1), "1234 5678 100750 ");
  EXPECT_EQ(remplacer(06664, CAP_CHOWN),
            "0 0 100644 topodata : attention : f a change de proprietaire ou de groupe\n");
}

TEST(Fichiers, LeaveNothingBehindWhateverEndsTheProgram) {
  const Dossier d;
  d.ecrire("f", "vieux");
  for (const auto prepare : {+[] {}, +[] { sans_fichiers_anonymes(); }})
    for (int numero = 0; numero <= SIGRTMAX; ++numero) {
      if (numero == SIGKILL || numero == SIGSTOP) continue;
      const pid_t fils = fork();
      if (fils == 0) {
        const rlimit sans_image{0, 0};
        setrlimit(RLIMIT_CORE, &sans_image);
        static_cast<void>(std::signal(numero, SIG_DFL));
        prepare();
        try {
          Sortie f(d.chemin() + "f"), g(d.chemin() + "g");
          f.flux() << std::string(100000, 'x');
          if (numero == 0) throw 0;
          f.fermer();
          Depot dossier(d.chemin() + "dossier", false);
          dossier.ecrire("x", [](std::ostream& x) { x << "y"; });
          raise(numero);
        } catch (int) {
        }
        _exit(0);
      }
      int etat = 0;
      // Those that stop the program, too, end it at last.
      if (waitpid(fils, &etat, WUNTRACED) == fils && WIFSTOPPED(etat)) {
        kill(fils, SIGTERM);
        kill(fils, SIGCONT);
        waitpid(fils, &etat, 0);
      }
      EXPECT_EQ(std::distance(fs::directory_iterator(d.chemin()), {}), 1) << "signal " << numero;
      EXPECT_EQ(d.lire("f"), "vieux");
    }
}
