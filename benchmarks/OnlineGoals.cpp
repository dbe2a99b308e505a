#include <string>
#include <vector>

#include "Velmora/Online/CommunityViews/CommunityPostList.h"
#include "benchmarks/Goals.h"
#include "benchmarks/Views.h"
#include "benchmarks/support/Measure.h"

namespace velmora::benchmarks {

namespace {

constexpr int rounds = 40;
constexpr double pageGoal = 0.01;  // seconds

std::vector<CommunityPost> makePage(int first) {
  std::vector<CommunityPost> posts(50);
  for (int n = 0; n < 50; ++n) {
    CommunityPost& post = posts[static_cast<std::size_t>(n)];
    post.id = UUID::random();
    post.title = "Night drive " + std::to_string(first + n);
    if (n % 2 == 0)
      post.caption =
          "Dusty drums under a slow pad; the bass comes in late. The kick is off the grid on purpose, so "
          "that "
          "it leans a little into the next bar.";
    post.durationMs = 1000 * (n % 20);
    post.creator.handle = "creator_" + std::to_string(n);
    post.creator.followers = 37 * n;
    post.votes = 11 * n;
  }
  return posts;
}

}  // namespace

void measureOnline(Report& report) {
  offscreenApplication();
  std::vector<double> first, next, changed;
  const auto show = [](CommunityPostList& list, const std::vector<CommunityPost>& posts) {
    return stepTimes(1, [&](int) { list.show(posts); }).front();
  };
  for (int round = 0; round < rounds; ++round) {
    QWidget window;
    IconButton before("repeat", "Reload", &window);
    CommunityPostList list({.isSignedIn = true}, before, &window);
    list.setGeometry(0, 44, 1280, 756);
    open(window, {1280, 800});
    std::vector<CommunityPost> posts = makePage(0);
    first.push_back(show(list, posts));
    posts = makePage(50);
    list.startOver();
    next.push_back(show(list, posts));
    posts[7].votes += 1;
    changed.push_back(show(list, posts));
  }
  const auto add = [&](const char* name, std::vector<double> times) {
    addFigure(report, name, Amount::seconds(median(std::move(times))), pageGoal);
  };
  add("lay out a first page of 50 posts", std::move(first));
  add("lay out the next page", std::move(next));
  add("lay out that page with one more vote", std::move(changed));
}

}  // namespace velmora::benchmarks
