#include "support/BruteRay.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <set>
#include <utility>

namespace qnl::testing {
namespace {

using Real = BruteRay::Real;
using Vector = BruteRay::Vector;

Vector Wide(const kernel::Point& p) {
    return {p[0], p[1], p[2]};
}

Vector Sub(const Vector& a, const Vector& b) {
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}

Real Inner(const Vector& a, const Vector& b) {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

Vector Outer(const Vector& a, const Vector& b) {
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

Real Norm(const Vector& a) {
    return std::sqrt(Inner(a, a));
}

std::vector<std::vector<int>> CellFaces(const kernel::MeshData& mesh, int cell) {
    const kernel::CellShape& shape = mesh.Shape(cell);
    std::vector<std::vector<int>> faces;
    for (std::size_t f = 0; f < static_cast<std::size_t>(shape.faces); ++f) {
        std::vector<int> nodes;
        for (std::size_t c = 0; c < shape.faceCorners[f]; ++c) {
            nodes.push_back(mesh.Corners(cell)[shape.face[f][c]]);
        }
        faces.push_back(nodes);
    }
    return faces;
}

std::vector<std::array<int, 3>> Triangles(const std::vector<int>& face) {
    if (face.size() == 3) {
        return {{face[0], face[1], face[2]}};
    }
    const auto smallest = static_cast<std::size_t>(std::min_element(face.begin(), face.end()) - face.begin());
    const auto at = [&](std::size_t i) { return face[(smallest + i) % 4]; };
    return {{at(0), at(1), at(2)}, {at(0), at(2), at(3)}};
}

}  // namespace

std::vector<std::vector<int>> BruteBoundary(const kernel::MeshData& mesh) {
    std::map<std::vector<int>, int> owners;
    const auto key = [](std::vector<int> nodes) {
        std::sort(nodes.begin(), nodes.end());
        return nodes;
    };
    for (int cell = 0; cell < mesh.Cells(); ++cell) {
        for (const auto& face : CellFaces(mesh, cell)) {
            ++owners[key(face)];
        }
    }
    std::vector<std::vector<int>> boundary;
    for (int cell = 0; cell < mesh.Cells(); ++cell) {
        for (const auto& face : CellFaces(mesh, cell)) {
            if (owners[key(face)] == 1) {
                boundary.push_back(face);
            }
        }
    }
    return boundary;
}

BruteRay::BruteRay(const kernel::MeshData& mesh, double meshSize)
    : mesh_(mesh),
      epsilon_((mesh.singlePrecision ? 1e-6 : 1e-8) * meshSize),
      passLength_(1e-4 * meshSize),
      faces_(BruteBoundary(mesh)) {
    for (int cell = 0; cell < mesh.Cells(); ++cell) {
        firstPiece_.push_back(pieces_.size());
        AddCell(cell);
    }
    firstPiece_.push_back(pieces_.size());
    for (const auto& face : faces_) {
        AddTriangles(face);
    }
}

void BruteRay::AddCell(int cell) {
    const auto place = [&](int node) { return Wide(mesh_.points[static_cast<std::size_t>(node)]); };
    const int* corners = mesh_.Corners(cell);
    if (mesh_.Shape(cell).type == kernel::CellType::Tetra) {
        AddPiece({place(corners[0]), place(corners[1]), place(corners[2]), place(corners[3])});
        return;
    }
    const int count = mesh_.Shape(cell).corners;
    kernel::Point sum{};
    for (int c = 0; c < count; ++c) {
        for (std::size_t a = 0; a < 3; ++a) {
            sum[a] += mesh_.points[static_cast<std::size_t>(corners[c])][a];
        }
    }
    const Vector middle = Wide({sum[0] / count, sum[1] / count, sum[2] / count});
    for (const auto& face : CellFaces(mesh_, cell)) {
        for (const auto& t : Triangles(face)) {
            AddPiece({place(t[0]), place(t[1]), place(t[2]), middle});
        }
    }
}

void BruteRay::AddPiece(const std::array<Vector, 4>& corners) {
    Piece piece{};
    for (std::size_t f = 0; f < 4; ++f) {
        const Vector& a = corners[(f + 1) % 4];
        Vector normal = Outer(Sub(corners[(f + 2) % 4], a), Sub(corners[(f + 3) % 4], a));
        const Real length = Norm(normal);
        if (length == 0.0L) {
            return;
        }
        const Real inner = Inner(normal, Sub(corners[f], a));
        const Real sign = inner > 0.0L ? -1.0L : 1.0L;
        for (Real& component : normal) {
            component *= sign / length;
        }
        piece[f] = {normal, Inner(normal, a)};
    }
    pieces_.push_back(piece);
}

void BruteRay::AddTriangles(const std::vector<int>& face) {
    std::vector<Triangle>& added = triangles_.emplace_back();
    for (const auto& nodes : Triangles(face)) {
        Triangle triangle{};
        triangle.nodes = nodes;
        for (std::size_t i = 0; i < 3; ++i) {
            triangle.corners[i] = Wide(mesh_.points[static_cast<std::size_t>(nodes[i])]);
        }
        const auto edge = [&](std::size_t to, std::size_t from) {
            return Sub(triangle.corners[to % 3], triangle.corners[from]);
        };
        triangle.normal = Outer(edge(1, 0), edge(2, 0));
        const Real length = Norm(triangle.normal);
        if (length == 0.0L) {
            continue;
        }
        for (Real& component : triangle.normal) {
            component /= length;
        }
        for (std::size_t i = 0; i < 3; ++i) {
            triangle.edges[i] = Outer(edge(i + 1, i), triangle.normal);
            triangle.rooms[i] = epsilon_ * Norm(triangle.edges[i]);
        }
        added.push_back(triangle);
    }
}

std::vector<BruteRay::Interval> BruteRay::Touched(std::size_t cell, const Vector& origin,
                                                  const Vector& direction) const {
    std::vector<Interval> spans;
    for (std::size_t p = firstPiece_[cell]; p < firstPiece_[cell + 1]; ++p) {
        Interval span{-1e300L, 1e300L};
        for (const Plane& plane : pieces_[p]) {
            const Real room = plane.offset + epsilon_ - Inner(plane.normal, origin);
            const Real speed = Inner(plane.normal, direction);
            if (speed > 0.0L) {
                span.high = std::min(span.high, room / speed);
            } else if (speed < 0.0L) {
                span.low = std::max(span.low, room / speed);
            } else if (room < 0.0L) {
                span.high = -1e301L;
            }
            if (span.low > span.high) {
                break;
            }
        }
        if (span.low <= span.high) {
            spans.push_back(span);
        }
    }
    std::sort(spans.begin(), spans.end(), [](const Interval& a, const Interval& b) { return a.low < b.low; });
    std::vector<Interval> joined;
    for (const Interval& span : spans) {
        if (!joined.empty() && span.low <= joined.back().high) {
            joined.back().high = std::max(joined.back().high, span.high);
        } else {
            joined.push_back(span);
        }
    }
    return joined;
}

bool BruteRay::FacePassed(std::size_t face, const Vector& origin, const Vector& direction, Real end) const {
    for (const Triangle& triangle : triangles_[face]) {
        const auto inside = [&](const Vector& point) {
            bool in = true;
            for (std::size_t i = 0; i < 3 && in; ++i) {
                in = Inner(triangle.edges[i], Sub(point, triangle.corners[i])) <= triangle.rooms[i];
            }
            return in;
        };
        const Real height = Inner(triangle.normal, Sub(triangle.corners[0], origin));
        const Real speed = Inner(triangle.normal, direction);
        if (std::fabs(height) <= epsilon_ && inside(origin)) {
            return true;
        }
        if (std::fabs(speed) <= 1e-6L) {
            continue;
        }
        const Real depth = height / speed;
        const Vector point{origin[0] + depth * direction[0], origin[1] + depth * direction[1],
                           origin[2] + depth * direction[2]};
        if (depth > epsilon_ && depth <= end + epsilon_ && inside(point)) {
            return true;
        }
    }
    return false;
}

BruteRay::Result BruteRay::Find(const kernel::Point& from, const kernel::Point& unit) const {
    const Vector origin = Wide(from);
    const Vector direction = Wide(unit);
    std::vector<std::pair<int, std::vector<Interval>>> touched;
    std::vector<Interval> all;
    for (int cell = 0; cell < mesh_.Cells(); ++cell) {
        std::vector<Interval> spans = Touched(static_cast<std::size_t>(cell), origin, direction);
        if (!spans.empty()) {
            all.insert(all.end(), spans.begin(), spans.end());
            touched.emplace_back(cell, std::move(spans));
        }
    }
    std::sort(all.begin(), all.end(), [](const Interval& a, const Interval& b) { return a.low < b.low; });
    Result result;
    bool inside = false;
    Real end = 0.0L;
    for (std::size_t i = 0; i < all.size();) {
        const Real low = all[i].low;
        Real high = all[i].high;
        for (++i; i < all.size() && all[i].low <= high + epsilon_; ++i) {
            high = std::max(high, all[i].high);
        }
        if (low <= 0.0L && high >= 0.0L) {
            inside = true;
            end = high;
        }
    }
    if (!inside) {
        return result;
    }
    for (const auto& [cell, spans] : touched) {
        Real length = 0.0L;
        for (const Interval& span : spans) {
            length += std::max(0.0L, std::min(span.high, end) - std::max(span.low, 0.0L));
        }
        result.narrowest = std::min(result.narrowest, std::fabs(length - passLength_) / passLength_);
        if (length > passLength_) {
            result.ids.push_back(Faces() + cell + 1);
        }
    }
    if (result.ids.empty()) {
        return result;
    }
    result.insideEnd = static_cast<double>(end);
    std::vector<int> faces;
    for (std::size_t face = 0; face < faces_.size(); ++face) {
        if (FacePassed(face, origin, direction, end)) {
            faces.push_back(static_cast<int>(face) + 1);
        }
    }
    result.ids.insert(result.ids.begin(), faces.begin(), faces.end());
    return result;
}

std::vector<int> BruteRay::BoundaryNodes() const {
    std::set<int> nodes;
    for (const auto& face : faces_) {
        nodes.insert(face.begin(), face.end());
    }
    return {nodes.begin(), nodes.end()};
}

kernel::Point BruteRay::InwardDirection(int node) const {
    Vector sum{};
    for (const auto& face : triangles_) {
        for (const Triangle& triangle : face) {
            if (std::find(triangle.nodes.begin(), triangle.nodes.end(), node) != triangle.nodes.end()) {
                sum = Sub(sum, triangle.normal);
            }
        }
    }
    const Real length = Norm(sum);
    kernel::Point direction{};
    for (std::size_t a = 0; a < 3 && length > 1e-12L; ++a) {
        constexpr double kRounding = 17179869184.0;
        direction[a] = std::nearbyint(static_cast<double>(sum[a] / length) * kRounding) / kRounding;
    }
    const double rounded =
        std::sqrt(direction[0] * direction[0] + direction[1] * direction[1] + direction[2] * direction[2]);
    for (double& component : direction) {
        component = rounded > 0.0 ? component / rounded : 0.0;
    }
    return direction;
}

double BruteRay::MeanEdge(const kernel::MeshData& mesh) {
    std::set<std::pair<int, int>> edges;
    for (const auto& face : BruteBoundary(mesh)) {
        for (std::size_t i = 0; i < face.size(); ++i) {
            const int a = face[i];
            const int b = face[(i + 1) % face.size()];
            edges.insert({std::min(a, b), std::max(a, b)});
        }
    }
    double sum = 0.0;
    for (const auto& [a, b] : edges) {
        const Vector edge = Sub(Wide(mesh.points[static_cast<std::size_t>(a)]),
                                Wide(mesh.points[static_cast<std::size_t>(b)]));
        sum += static_cast<double>(Norm(edge));
    }
    return sum / static_cast<double>(edges.size());
}

}  // namespace qnl::testing
