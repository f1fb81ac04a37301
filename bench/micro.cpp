// Timings of the library's parts, on collections of 1,000, 4,000 and 16,000 blocks in all and on
// synthetic tables.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "base/base.h"
#include "dataset/basebuffer.h"
#include "dataset/schema.h"
#include "texte/nombres.h"

using namespace topomine;

namespace {

const char* const textes[] = {"0", "12345", "0.3982", "-0.5952275506", "3.607401222e-15"};

void conversion_reel(benchmark::State& etat) {
  const std::string texte = textes[etat.range(0)];
  FluxNombres nombres;
  for (auto _ : etat) benchmark::DoNotOptimize(nombres.reel(texte));
  etat.SetLabel(texte);
}
BENCHMARK(conversion_reel)->DenseRange(0, 4);

void conversion_reel_flux(benchmark::State& etat) {
  const std::string texte = textes[etat.range(0)];
  std::stringstream flux;
  double v = 0;
  for (auto _ : etat) {
    flux.clear();
    flux << texte;
    flux >> v;
    benchmark::DoNotOptimize(v);
  }
  etat.SetLabel(texte);
}
BENCHMARK(conversion_reel_flux)->DenseRange(0, 4);

void ecriture_reel(benchmark::State& etat) {
  std::string texte;
  for (auto _ : etat) {
    texte.clear();
    ajouter_nombre(texte, 0.39825716);
    benchmark::DoNotOptimize(texte.data());
  }
}
BENCHMARK(ecriture_reel);

/// The first base of the collection of that many blocks, ready to load.
Base base_de(std::int64_t blocs) {
  Base base("mesh_case_1", BENCH_CASES "/" + std::to_string(blocs) + "/", "nrm");
  base._disp(false);
  base.gen_nom_base();
  return base;
}

Base base_chargee(std::int64_t blocs) {
  Base base = base_de(blocs);
  if (!base.load_all()) std::abort();
  return base;
}

void par_bloc(benchmark::State& etat, std::size_t blocs) {
  etat.counters["blocs/s"] =
      benchmark::Counter(static_cast<double>(blocs), benchmark::Counter::kIsIterationInvariantRate);
}

template <bool (Base::*charger)()>
void chargement(benchmark::State& etat) {
  Base base = base_de(etat.range(0));
  for (auto _ : etat) {
    if (!(base.*charger)()) etat.SkipWithError("not loaded");
  }
  par_bloc(etat, static_cast<std::size_t>(etat.range(0)) / bases_integrees.size());
}
BENCHMARK(chargement<&Base::load_blocs>)->Arg(1000)->Arg(4000)->Arg(16000);
BENCHMARK(chargement<&Base::load_faces>)->Arg(1000)->Arg(4000)->Arg(16000);
BENCHMARK(chargement<&Base::load_edges>)->Arg(1000)->Arg(4000)->Arg(16000);
BENCHMARK(chargement<&Base::load_vrtxs>)->Arg(1000)->Arg(4000)->Arg(16000);
BENCHMARK(chargement<&Base::load_scene>)->Arg(1000);

void make_link(benchmark::State& etat) {
  Base lue = base_de(etat.range(0));
  if (!(lue.load_blocs() && lue.load_faces() && lue.load_edges() && lue.load_vrtxs())) std::abort();
  std::unique_ptr<Base> base;
  for (auto _ : etat) {
    etat.PauseTiming();
    base = std::make_unique<Base>(lue);
    etat.ResumeTiming();
    base->make_link();
  }
  par_bloc(etat, lue.blocs.size());
}
BENCHMARK(make_link)->Arg(1000)->Arg(4000)->Arg(16000);

void add_base(benchmark::State& etat) {
  Base base = base_chargee(etat.range(0));
  BaseBuffer table;
  for (auto _ : etat) {
    etat.PauseTiming();
    table._expl.clear();
    etat.ResumeTiming();
    table.add_base(base);
  }
  par_bloc(etat, base.blocs.size());
}
BENCHMARK(add_base)->Arg(1000)->Arg(4000)->Arg(16000);

/// The table of a whole collection, repeated until it has at least `lignes` rows.
BaseBuffer table_de(std::int64_t blocs, std::size_t lignes = 0) {
  BaseBuffer table("topology");
  for (const std::string_view nom : bases_integrees) {
    Base base = base_de(blocs);
    base.nom = nom;
    base.gen_nom_base();
    if (!base.load_all()) std::abort();
    table.add_base(base);
  }
  while (table._expl.size() < lignes) table.add_buffer(table);
  if (lignes > 0) table._expl.resize(lignes);
  return table;
}

void normalize(benchmark::State& etat) {
  const BaseBuffer lue = table_de(etat.range(0));
  BaseBuffer table;
  for (auto _ : etat) {
    etat.PauseTiming();
    table = lue;
    etat.ResumeTiming();
    table.normalize();
  }
  par_bloc(etat, lue._expl.size());
}
BENCHMARK(normalize)->Arg(1000)->Arg(4000)->Arg(16000);

void covar(benchmark::State& etat) {
  BaseBuffer table = table_de(etat.range(0));
  table.normalize();
  for (auto _ : etat) benchmark::DoNotOptimize(table.covar(col_erikson, col_vois_vexa_var));
  par_bloc(etat, table._expl.size());
}
BENCHMARK(covar)->Arg(1000)->Arg(4000)->Arg(16000);

void mat_cov(benchmark::State& etat) {
  BaseBuffer table = table_de(etat.range(0));
  table.normalize();
  for (auto _ : etat) {
    std::ostringstream out;
    table.mat_cov(out);
  }
  par_bloc(etat, table._expl.size());
}
BENCHMARK(mat_cov)->Arg(1000)->Arg(4000)->Arg(16000)->Unit(benchmark::kMillisecond);

constexpr std::size_t grande_table = 100000;
const char* const fichier_essai = BENCH_CASES "/table";

void par_ligne(benchmark::State& etat, std::size_t lignes = grande_table) {
  etat.counters["lignes/s"] = benchmark::Counter(static_cast<double>(lignes),
                                                 benchmark::Counter::kIsIterationInvariantRate);
}

template <std::ostream& (BaseBuffer::*ecrire)(std::ostream&)>
void ecriture(benchmark::State& etat) {
  BaseBuffer table = table_de(16000, grande_table);
  for (auto _ : etat) {
    std::ofstream out(fichier_essai);
    (table.*ecrire)(out);
  }
  par_ligne(etat);
}
BENCHMARK(ecriture<&BaseBuffer::Print_weka>)->Unit(benchmark::kMillisecond);
BENCHMARK(ecriture<&BaseBuffer::Print_torch>)->Unit(benchmark::kMillisecond);

void ecriture_fwrite(benchmark::State& etat) {
  BaseBuffer table = table_de(16000, grande_table);
  std::ostringstream out;
  table.Print_weka(out);
  const std::string octets = out.str();
  for (auto _ : etat) {
    std::FILE* f = std::fopen(fichier_essai, "w");
    if (!f || std::fwrite(octets.data(), 1, octets.size(), f) != octets.size()) std::abort();
    std::fclose(f);
  }
  par_ligne(etat);
}
BENCHMARK(ecriture_fwrite)->Unit(benchmark::kMillisecond);

void rdm_list(benchmark::State& etat) {
  BaseBuffer table = table_de(16000, grande_table);
  for (auto _ : etat) table.rdm_list();
  par_ligne(etat);
}
BENCHMARK(rdm_list)->Unit(benchmark::kMillisecond);

void create_fakes(benchmark::State& etat) {
  BaseBuffer table = table_de(16000, grande_table);
  for (auto _ : etat) {
    table.create_fakes(static_cast<int>(grande_table));
    etat.PauseTiming();
    table._expl.resize(grande_table);
    etat.ResumeTiming();
  }
  par_ligne(etat);
}
BENCHMARK(create_fakes)->Unit(benchmark::kMillisecond);

template <int (BaseBuffer::*creer)(BaseBuffer&, int)>
void create_fake(benchmark::State& etat) {
  BaseBuffer table = table_de(16000, grande_table);
  BaseBuffer faux;
  for (auto _ : etat) (table.*creer)(faux, static_cast<int>(grande_table));
  par_ligne(etat);
}
BENCHMARK(create_fake<&BaseBuffer::create_fake_base>)->Unit(benchmark::kMillisecond);
BENCHMARK(create_fake<&BaseBuffer::create_fake_base2>)->Unit(benchmark::kMillisecond);

/// What the library says while it is timed.
class Silence : public std::streambuf {
  int overflow(int c) override { return c; }
  std::streamsize xsputn(const char*, std::streamsize n) override { return n; }
};

/// Results go to standard output past the silence.
class Sortie {
 public:
  Sortie() : erreurs_(std::cerr.rdbuf(&silence_)), flux_(std::cout.rdbuf(&silence_)) {}
  ~Sortie() {
    std::cout.rdbuf(flux_.rdbuf());
    std::cerr.rdbuf(erreurs_);
  }
  Sortie(const Sortie&) = delete;
  Sortie& operator=(const Sortie&) = delete;
  std::ostream& flux() { return flux_; }

 private:
  Silence silence_;
  std::streambuf* erreurs_;
  std::ostream flux_;
};

}  // namespace

int main(int argc, char** argv) {
  Sortie sortie;
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::ConsoleReporter rapport(benchmark::ConsoleReporter::OO_Tabular);
  rapport.SetOutputStream(&sortie.flux());
  rapport.SetErrorStream(&sortie.flux());
  benchmark::RunSpecifiedBenchmarks(&rapport);
  return 0;
}
