#include "report.hpp"

#include <cmath>
#include <cstdio>
#include <fstream>
#include <map>
#include <memory>
#include <stdexcept>

namespace bench {

namespace {

// By shape in the order of the measurements, then by size.
std::vector<std::string> shapes_of(const std::vector<measurement>& all) {
  std::vector<std::string> shapes;
  for (const measurement& each : all) {
    if (each.rows == all.front().rows) shapes.push_back(each.shape);
  }
  return shapes;
}

std::map<std::size_t, std::map<std::string, double>> ratios_by_size(const std::vector<measurement>& all) {
  std::map<std::size_t, std::map<std::string, double>> ratios;
  for (const measurement& each : all) ratios[each.rows][each.shape] = each.ratio;
  return ratios;
}

}  // namespace

void print_heading(bool has_duckdb) {
  std::printf("%-22s %8s %9s %9s %9s %8s %15s %8s %7s", "shape", "rows", "ov ns", "sqlite ns", "floor ns", "sqlite/ov",
              "spread", "ov/floor", "allocs");
  if (has_duckdb) std::printf(" %9s %9s", "duckdb ns", "duckdb/ov");
  std::printf("\n");
}

void print_line(const measurement& of) {
  std::printf("%-22s %8zu %9.1f %9.1f %9.1f %9.2f %7.2f-%6.2f %8.2f %7.3f", of.shape.c_str(), of.rows, of.ov, of.sqlite,
              of.floor, of.ratio, of.least_ratio, of.greatest_ratio, of.over_floor, of.allocations);
  if (of.duckdb) std::printf(" %9.1f %9.2f", *of.duckdb, *of.duckdb_ratio);
  std::printf("\n");
  std::fflush(stdout);
}

void print_means(const std::vector<measurement>& all) {
  for (const auto& [rows, shapes] : ratios_by_size(all)) {
    double logarithms = 0;
    double least = HUGE_VAL;
    for (const auto& [shape, ratio] : shapes) {
      logarithms += std::log(ratio);
      least = std::min(least, ratio);
    }
    const double mean = std::exp(logarithms / static_cast<double>(shapes.size()));
    std::printf("%zu rows: SQLite takes %.2f times our time (geometric mean), %.2f times at least\n", rows, mean,
                least);
  }
}

void write_csv(const std::string& file, const std::vector<measurement>& all) {
  std::ofstream out(file);
  out << "shape,rows,engine,ns_per_row\n";
  for (const measurement& each : all) {
    const std::pair<const char*, double> engines[] = {{"ov", each.ov}, {"sqlite", each.sqlite}, {"floor", each.floor}};
    for (const auto& [engine, time] : engines)
      out << each.shape << ',' << each.rows << ',' << engine << ',' << time << '\n';
    if (each.duckdb) out << each.shape << ',' << each.rows << ",duckdb," << *each.duckdb << '\n';
  }
  if (!out.flush()) throw std::runtime_error("cannot write " + file);
}

void write_svg(const std::string& file, const std::vector<measurement>& all) {
  const std::unique_ptr<FILE, int (*)(FILE*)> gnuplot(popen("gnuplot", "w"), pclose);
  if (!gnuplot) throw std::runtime_error("cannot start gnuplot");
  const auto sizes = ratios_by_size(all);
  std::string script =
      "set terminal svg size 1200,600 background 'white'\n"
      "set output '" +
      file +
      "'\n"
      "set style data histogram\nset style fill solid 0.8\nset logscale y 2\nset grid ytics\n"
      "set ylabel \"SQLite's time / ours\"\nset xtics rotate by -45\nset key top left\n$ratios << END\nshape";
  for (const auto& [rows, ratios] : sizes) script += " \"" + std::to_string(rows) + " rows\"";
  for (const std::string& shape : shapes_of(all)) {
    script += "\n\"" + shape + "\"";
    for (const auto& [rows, ratios] : sizes) script += " " + std::to_string(ratios.at(shape));
  }
  script +=
      "\nEND\nset key autotitle columnheader noenhanced\nset xtics noenhanced\n"
      "plot for [i=2:" +
      std::to_string(sizes.size() + 1) + "] $ratios using i:xtic(1), 1 with lines lc 'black' notitle\n";
  std::fputs(script.c_str(), gnuplot.get());
  if (std::fflush(gnuplot.get()) != 0) throw std::runtime_error("gnuplot did not take its script");
}

}  // namespace bench
