// The matrix operations of every frame against the same work in GLM with its aligned SIMD types.
// Operands lie in arrays that fit the nearest cache; a row tells the cost of one operation. Built
// twice: for any processor, and for that of the machine, as hosts do that ask for it.

#include <random>
#include <vector>

#include <benchmark/benchmark.h>

#include "bench/support/row.h"
#include "orvex/math/mat4.h"

#define GLM_FORCE_INTRINSICS
#include <glm/glm.hpp>
#include <glm/gtc/type_aligned.hpp>

namespace {

using orvex_bench::take_turns;

constexpr std::size_t COUNT = 64;

struct OrvexTypes {
    using matrix = orvex::mat4;
    using vector = orvex::vec4;
    static float* floats(matrix& m) { return m.m; }
    static float* floats(vector& v) { return &v.x; }
    static void invert(const matrix& m, matrix& inverse) {
        inverse = m;
        inverse.inverse();
    }
};

struct OrvexInverted : OrvexTypes {
    static void invert(const matrix& m, matrix& inverse) { inverse = m.inverted(); }
};
struct OrvexInvertTo : OrvexTypes {
    static void invert(const matrix& m, matrix& inverse) { m.invert_to(inverse); }
};

template<typename Matrix, typename Vector>
struct GlmTypes {
    using matrix = Matrix;
    using vector = Vector;
    static float* floats(matrix& m) { return &m[0].x; }
    static float* floats(vector& v) { return &v.x; }
    static void invert(const matrix& m, matrix& inverse) { inverse = glm::inverse(m); }
};
using Glm = GlmTypes<glm::mat4, glm::vec4>;
using GlmAligned = GlmTypes<glm::aligned_mat4, glm::aligned_vec4>;

template<typename Types>
struct Operands {
    std::vector<typename Types::matrix> a{COUNT}, b{COUNT}, product{COUNT};
    std::vector<typename Types::vector> v{COUNT}, turned{COUNT};

    Operands() {
        std::mt19937 random(1);
        std::uniform_real_distribution<float> distribution(-2.0f, 2.0f);
        for (std::size_t i = 0; i < COUNT; ++i) {
            for (int e = 0; e < 16; ++e)
                Types::floats(a[i])[e] = distribution(random);
            for (int e = 0; e < 16; ++e)
                Types::floats(b[i])[e] = distribution(random);
            for (int e = 0; e < 4; ++e)
                Types::floats(v[i])[e] = distribution(random);
        }
    }
};

/// One pass over all operands, a thousand times.
constexpr int PASSES = 1000;

template<typename Types>
struct Work {
    Operands<Types> operands;

    template<class Pass>
    void run(Pass pass) {
        for (int i = 0; i < PASSES; ++i) {
            for (std::size_t k = 0; k < COUNT; ++k)
                pass(operands, k);
            benchmark::DoNotOptimize(operands.product.data());
            benchmark::DoNotOptimize(operands.turned.data());
            benchmark::ClobberMemory();
        }
    }
    void multiply() {
        run([](auto& of, std::size_t k) { of.product[k] = of.a[k] * of.b[k]; });
    }
    void turn() {
        run([](auto& of, std::size_t k) { of.turned[k] = of.a[k] * of.v[k]; });
    }
    void invert() {
        run([](auto& of, std::size_t k) { Types::invert(of.a[k], of.product[k]); });
    }
};

/// @tparam hundredths  of the goal
template<typename Ours, int hundredths>
void product(benchmark::State& state) {
    Work<Ours> ours;
    Work<GlmAligned> peer;
    take_turns(
        state, {"GLM, aligned types", hundredths / 100.0}, [&] { ours.multiply(); },
        [&] { peer.multiply(); }, PASSES * COUNT);
}

template<typename Ours, int hundredths>
void product_with_vector(benchmark::State& state) {
    Work<Ours> ours;
    Work<GlmAligned> peer;
    take_turns(
        state, {"GLM, aligned types", hundredths / 100.0}, [&] { ours.turn(); },
        [&] { peer.turn(); }, PASSES * COUNT);
}

template<typename Ours, int hundredths>
void inverse(benchmark::State& state) {
    Work<Ours> ours;
    Work<Glm> peer;
    take_turns(
        state, {"GLM", hundredths / 100.0}, [&] { ours.invert(); }, [&] { peer.invert(); },
        PASSES * COUNT);
}

BENCHMARK_TEMPLATE(product, OrvexTypes, 110)->Name("product")->UseManualTime();
BENCHMARK_TEMPLATE(product_with_vector, OrvexTypes, 110)
    ->Name("product_with_vector")
    ->UseManualTime();
// What is inverted in place lies in memory: a compiler that has wider registers reads parts of what
// it stored just before.
BENCHMARK_TEMPLATE(inverse, OrvexTypes, 200)->Name("inverse/in_place")->UseManualTime();
BENCHMARK_TEMPLATE(inverse, OrvexInverted, 80)->Name("inverse/inverted")->UseManualTime();
BENCHMARK_TEMPLATE(inverse, OrvexInvertTo, 80)->Name("inverse/invert_to")->UseManualTime();

} // namespace

BENCHMARK_MAIN();
