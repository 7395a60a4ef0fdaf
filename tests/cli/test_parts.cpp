// Parts of pictures and tables: points that are kept, plots of characters, dates.
#include <doctest/doctest.h>

#include <algorithm>

#include "cli/io/dates.h"
#include "cli/plot/points.h"
#include "cli/plot/text_plot.h"
#include "support/random.h"

TEST_CASE("few points are all kept, of many the extremes of each column of dots") {
  support::Random random;
  for (const bool descending : {false, true}) {
    std::vector<QuarnFloat> x;
    std::vector<QuarnFloat> y;
    constexpr int kCount = 5000;
    constexpr std::size_t kWidth = 100;
    for (int i = 0; i < kCount; ++i) {
      x.emplace_back(descending ? kCount - i : i);
      y.emplace_back(std::int64_t(random.below(1000000)));
    }
    const cli::Points points = cli::points_of(x, y, true, kWidth, 50);
    CHECK(points.size() <= 4 * kWidth);
    CHECK(points.x.front() == FloatToDouble(x.front()));
    CHECK(points.y.back() == FloatToDouble(y.back()));
    constexpr int kEach = kCount / int(kWidth);
    for (int first = 0; first + kEach <= kCount; first += kEach) {
      // The same extremes in every part as wide as a dot and its neighbours.
      const int begin = std::max(0, first - kEach);
      const int end = std::min(kCount, first + 2 * kEach);
      const double most = FloatToDouble(*std::max_element(y.begin() + first, y.begin() + first + kEach));
      const double least = FloatToDouble(*std::min_element(y.begin() + first, y.begin() + first + kEach));
      double kept_most = -1;
      double kept_least = 2e6;
      for (std::size_t i = 0; i < points.size(); ++i) {
        const double place = descending ? kCount - points.x[i] : points.x[i];
        if (place >= begin && place < end) {
          kept_most = std::max(kept_most, points.y[i]);
          kept_least = std::min(kept_least, points.y[i]);
        }
      }
      CHECK(kept_most >= most);
      CHECK(kept_least <= least);
    }
    const cli::Points single = cli::points_of(x, y, false, kWidth, 50);
    CHECK(single.size() <= 5000);
    CHECK(cli::points_of({0, 1, 2}, {5, 1, 3}, true, kWidth, 50).size() == 3);
  }
  CHECK(cli::points_of({}, {}, true, 10, 10).size() == 0);
  const std::vector<QuarnFloat> same(1000, QuarnFloat(3));
  CHECK(cli::points_of(same, same, true, 10, 10).size() == 2);
  CHECK(cli::points_of(same, same, false, 10, 10).size() == 1);
  const cli::Points far = cli::points_of({QuarnFloat("2e-400")}, {QuarnFloat("-15e400")}, true, 10, 10);
  CHECK(far.x == std::vector<double>{2});
  CHECK(far.y == std::vector<double>{-1.5});
  CHECK(far.x_exponent == -400);
  CHECK(far.y_exponent == 401);
  CHECK_THROWS(cli::points_of({0}, {QuarnFloat("nan")}, true, 10, 10));
  CHECK(cli::power_text(2.3979400086720375) == "2.5e2");
  CHECK(cli::power_text(-0.0001) == "1e0");
}

TEST_CASE("a plot of characters") {
  const cli::Panel panel{"title", "x", "y", {{0, 1, 2}, {0, 2, 0}}, {}, cli::Panel::Style::points};
  const std::string ascii = cli::text_picture(panel, false);
  CHECK(ascii.find("         2 +") != std::string::npos);
  CHECK(std::count(ascii.begin(), ascii.end(), '*') == 3);
  const std::string dots = cli::text_picture(panel, true);
  CHECK(dots.find("\u2801") != std::string::npos);
  // One number, none, and extremes of the range of a double.
  CHECK_FALSE(cli::text_picture(cli::Panel{"", "", "", {{3}, {4}}, {}, cli::Panel::Style::line}, true).empty());
  CHECK_FALSE(cli::text_picture(cli::Panel{"", "", "", {{}, {}}, {}, cli::Panel::Style::stems}, true).empty());
  const cli::Panel wide{"", "", "", {{QuarnFloat("-1e308"), QuarnFloat("1e308")}, {0, 1}}, {}, cli::Panel::Style::line};
  CHECK_FALSE(cli::text_picture(wide, true).empty());
  CHECK(cli::text_picture(cli::Spy{"", 2, 2, {1}, {2}}, false) == "  |  ##|\n  |    |\n");
}

TEST_CASE("dates") {
  const auto seconds = [](const char* text) {
    const auto moment = cli::parse_moment(text);
    REQUIRE(moment.has_value());
    return FloatToDouble(moment->seconds);
  };
  CHECK(seconds("1970-01-02") == 86400);
  CHECK(seconds("2000-02-29 12:00") == 951825600);
  CHECK(seconds("29.02.2000T12:00:00.25") == 951825600.25);
  CHECK(seconds("2000/02/29T14:00+02:00") == 951825600);
  CHECK(seconds("1900-01-01") == -2208988800.0);
  for (const char* text : {"", "2000", "2000-1-1", "1900-02-29", "2000-02-30", "31.04.2000", "2000-01-01x", "12:30",
                           "1.5", "2000-01-01T", "2000-01-01T1", "2000/01", "01/02/2000", "2000-01-01T00:00:00."}) {
    CAPTURE(text);
    CHECK_FALSE(cli::parse_moment(text).has_value());
  }
}
