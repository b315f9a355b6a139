// Sections at the ends of the number range, and failed edits that must change nothing.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "profiles/Loop7.h"
#include "support/ProfileTestShapes.h"

namespace tgp {
namespace {

using test::ExpectError;

std::shared_ptr<Loop7> Square(double side, double at = 0) {
    auto loop = Loop7::Create();
    loop->InitFromCoordinates(std::vector<double>{at, at, at, at + side, at + side, at + side, at + side, at},
                              std::vector<double>(4, 0.0));
    return loop;
}

TEST(TinyAndHugeSections, TheRangeOfASectionAndClearErrorsBeyondIt) {
    // Side 1E-100 would be a section, but every side below 1E-05 is dropped as zero length: the loop
    // is empty, and says so instead of dividing by its vertex count of 0.
    ExpectError(
        5,
        "Invalid Loop to generate Inertia Properties: the loop has no segment (sides shorter than 1E-05 are "
        "dropped)",
        [] { Square(1e-200)->InertiaBlock(); });
    EXPECT_EQ(Square(1e-200)->Count(), 0u);
    // Side 1E-4: a tiny section, computed (second moments of 1E-16 / 12).
    EXPECT_NEAR(Square(1e-4)->MomentOfInertiaX(), 1e-16 / 12, 1e-30);
    // Side 1E+100: the area fits, the second moments (1E+400) do not.
    ExpectError(6, "Overflow", [] { Square(1e100)->InertiaBlock(); });
}

class RecordingEntity final : public HostEntity {
  public:
    explicit RecordingEntity(bool refuse) : refuse_(refuse) {}
    void Move(const Point&, const Point&) override {
        ++moves;
        if (refuse_) throw Error(440, "the entity is locked");
    }
    int moves = 0;

  private:
    bool refuse_;
};

TEST(FailedEdits, ChangeNothing) {
    auto loop = Square(10);
    const double area = loop->Area();
    const std::vector<double> before = loop->Coordinates();
    // The entity refuses: its error comes out, the loop has not moved.
    auto refusing = std::make_shared<RecordingEntity>(true);
    loop->AcadEntity(refusing);
    ExpectError(440, "the entity is locked", [&] { loop->Move({1, 2, 0}, true); });
    EXPECT_EQ(loop->Coordinates(), before);
    // A move that would overflow: nothing moves, not even the entity.
    auto willing = std::make_shared<RecordingEntity>(false);
    loop->AcadEntity(willing);
    loop->Move({1e308, 0, 0}, true);
    EXPECT_EQ(willing->moves, 1);
    const std::vector<double> moved = loop->Coordinates();
    ExpectError(6, "Overflow", [&] { loop->Move({1e308, 0, 0}, true); });
    EXPECT_EQ(willing->moves, 1);
    EXPECT_EQ(loop->Coordinates(), moved);
    loop = Square(10);
    // A transformation that would overflow, and one that would collapse the loop.
    ExpectError(6, "Overflow", [&] { loop->Transformation({0, 0, 0}, 0, 1e308, 1, {0, 0, 0}); });
    EXPECT_EQ(loop->Coordinates(), before);
    ExpectError(2411,
                "Cannot Transformation Loop7 with a scale factor of 0: the loop would collapse onto a line",
                [&] {
                    loop->Transformation({0, 0, 0}, 0, 0, 1, {0, 0, 0});
                });
    EXPECT_EQ(loop->Area(), area);
}

TEST(FailedEdits, InertiaBlockInitRefusesNonsenseAndStoresNothing) {
    auto block = InertiaBlock::Create();
    block->Init(1, 2, 3, {4, 5, 0}, 6);
    const Point x{1, 0, 0}, alsoX{-2, 0, 0};
    ExpectError(2411, "Vector unitvec(u) = u = 0", [&] {
        block->Init(7, 8, 9, {0, 0, 0}, 10, 1.0, &x, &alsoX);
    });
    ExpectError(9, "Subscript out of range", [&] { block->Init(7, 8, 9, {}, 10); });
    const Point plane{1, 0};
    ExpectError(9, "Subscript out of range", [&] { block->Init(7, 8, 9, {0, 0, 0}, 10, 1.0, &plane); });
    EXPECT_EQ(block->MomentOfInertiaX()->Millimetres(), 1);
    EXPECT_EQ(block->Centroid(), (Point{4, 5, 0}));
    block->Init(7, 8, 9, {1, 2}, 10);  // a plane centroid gets z = 0
    EXPECT_EQ(block->Centroid(), (Point{1, 2, 0}));
    block->Move({1e308, 0, 0});
    ExpectError(6, "Overflow", [&] { block->Move({1e308, 0, 0}); });
    EXPECT_EQ(block->Centroid(), (Point{1e308 + 1, 2, 0}));
}

}  // namespace
}  // namespace tgp
