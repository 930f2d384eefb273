// The matrix operations of every frame against the same work in GLM, as its headers come and with
// its aligned SIMD types. Operands lie in arrays that fit the nearest cache; an item is one
// operation.

#include <random>
#include <vector>

#include <benchmark/benchmark.h>

#include "orvex/math/mat4.h"

#ifdef ORVEX_BENCH_GLM
#define GLM_FORCE_INTRINSICS
#include <glm/glm.hpp>
#include <glm/gtc/type_aligned.hpp>
#endif

namespace {

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

#ifdef ORVEX_BENCH_GLM
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
#endif

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

void count_items(benchmark::State& state) {
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(COUNT));
}

template<typename Types>
void product(benchmark::State& state) {
    Operands<Types> operands;
    for (auto _ : state) {
        for (std::size_t i = 0; i < COUNT; ++i)
            operands.product[i] = operands.a[i] * operands.b[i];
        benchmark::DoNotOptimize(operands.product.data());
        benchmark::ClobberMemory();
    }
    count_items(state);
}

template<typename Types>
void product_with_vector(benchmark::State& state) {
    Operands<Types> operands;
    for (auto _ : state) {
        for (std::size_t i = 0; i < COUNT; ++i)
            operands.turned[i] = operands.a[i] * operands.v[i];
        benchmark::DoNotOptimize(operands.turned.data());
        benchmark::ClobberMemory();
    }
    count_items(state);
}

template<typename Types>
void inverse(benchmark::State& state) {
    Operands<Types> operands;
    for (auto _ : state) {
        for (std::size_t i = 0; i < COUNT; ++i)
            Types::invert(operands.a[i], operands.product[i]);
        benchmark::DoNotOptimize(operands.product.data());
        benchmark::ClobberMemory();
    }
    count_items(state);
}

BENCHMARK(product<OrvexTypes>)->Name("product/orvex");
BENCHMARK(product_with_vector<OrvexTypes>)->Name("product_with_vector/orvex");
BENCHMARK(inverse<OrvexTypes>)->Name("inverse/orvex");
BENCHMARK(inverse<OrvexInverted>)->Name("inverse/orvex_inverted");
BENCHMARK(inverse<OrvexInvertTo>)->Name("inverse/orvex_invert_to");
#ifdef ORVEX_BENCH_GLM
BENCHMARK(product<Glm>)->Name("product/glm");
BENCHMARK(product<GlmAligned>)->Name("product/glm_aligned");
BENCHMARK(product_with_vector<Glm>)->Name("product_with_vector/glm");
BENCHMARK(product_with_vector<GlmAligned>)->Name("product_with_vector/glm_aligned");
BENCHMARK(inverse<Glm>)->Name("inverse/glm");
BENCHMARK(inverse<GlmAligned>)->Name("inverse/glm_aligned");
#endif

} // namespace

BENCHMARK_MAIN();
