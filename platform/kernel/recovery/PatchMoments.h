#pragma once

#include <array>
#include <cstddef>
#include <utility>

#include "kernel/mesh/MeshData.h"

namespace qnl::kernel {

/// Powers of x, y and z in a monomial.
struct Powers {
    std::size_t x;
    std::size_t y;
    std::size_t z;
};

/// The monomials of degree 1 to 6, by degree, and how each is made.
class Monomials {
public:
    static constexpr std::size_t kCount = 83;

    /// A monomial is a coordinate times another one; `other` is kCount, which stands for 1, at degree 1.
    struct Product {
        std::size_t other;
        std::size_t axis;
    };

    constexpr Monomials() {
        std::size_t next = 0;
        for (std::size_t degree = 1; degree <= kMostDegree; ++degree) {
            for (std::size_t x = 0; x <= degree; ++x) {
                for (std::size_t y = 0; x + y <= degree; ++y) {
                    number[x][y][degree - x - y] = next++;
                }
            }
        }
        for (std::size_t x = 0; x <= kMostDegree; ++x) {
            for (std::size_t y = 0; x + y <= kMostDegree; ++y) {
                for (std::size_t z = x + y > 0 ? 0 : 1; x + y + z <= kMostDegree; ++z) {
                    product[number[x][y][z]] = ProductFor({x, y, z});
                }
            }
        }
    }

    constexpr std::size_t NumberOf(const Powers& a, const Powers& b) const {
        return number[a.x + b.x][a.y + b.y][a.z + b.z];
    }
    constexpr const Product& ProductOf(std::size_t monomial) const { return product[monomial]; }

private:
    static constexpr std::size_t kMostDegree = 6;

    constexpr Product ProductFor(Powers p) const {
        const std::size_t axis = p.x > 0 ? 0U : p.y > 0 ? 1U : 2U;
        (axis == 0 ? p.x : axis == 1 ? p.y : p.z) -= 1;
        return {p.x + p.y + p.z == 0 ? kCount : number[p.x][p.y][p.z], axis};
    }

    std::size_t number[kMostDegree + 1][kMostDegree + 1][kMostDegree + 1]{};
    Product product[kCount]{};
};

inline constexpr Monomials kMonomials;

/// Sums over places of weight times monomial: the entries of the normal equations of a fit by monomials of
/// degree 1 to 3, of which many are alike. Places are taken four at a time, which lets the processor add them
/// at once; the four sums are added last, so that the bits are the same in every build.
class PatchMoments {
public:
    void Add(const Point& place, double weight) {
        for (std::size_t axis = 0; axis < place.size(); ++axis) {
            place_[axis][lane_] = place[axis];
        }
        weight_[lane_] = weight;
        lane_ = (lane_ + 1) % kLanes;
        if (lane_ == 0) {
            AddAll(std::make_index_sequence<Monomials::kCount>());
        }
    }

    /// To be called when all places are added.
    void Finish() {
        while (lane_ != 0) {
            Add({0.0, 0.0, 0.0}, 0.0);
        }
    }

    /// The sum for the product of two monomials.
    double Of(const Powers& a, const Powers& b) const {
        const Lanes& sum = sums_[kMonomials.NumberOf(a, b)];
        return (sum[0] + sum[1]) + (sum[2] + sum[3]);
    }

private:
    static constexpr std::size_t kLanes = 4;
    using Lanes = std::array<double, kLanes>;
    using Values = std::array<Lanes, Monomials::kCount + 1>;

    template <std::size_t... Monomial>
    void AddAll(std::index_sequence<Monomial...> /*all*/) {
        Values values;
        values[Monomials::kCount] = weight_;
        (AddProduct<Monomial>(values), ...);
    }

    template <std::size_t Monomial>
    void AddProduct(Values& values) {
        constexpr Monomials::Product kProduct = kMonomials.ProductOf(Monomial);
        for (std::size_t lane = 0; lane < kLanes; ++lane) {
            values[Monomial][lane] = values[kProduct.other][lane] * place_[kProduct.axis][lane];
            sums_[Monomial][lane] += values[Monomial][lane];
        }
    }

    std::array<Lanes, 3> place_{};
    Lanes weight_{};
    std::size_t lane_ = 0;
    std::array<Lanes, Monomials::kCount> sums_{};
};

}  // namespace qnl::kernel
