#include <QCoreApplication>
#include <iostream>

#include "tools/update-feed/FeedTool.h"

int main(int count, char** arguments) {
  const QCoreApplication application(count, arguments);
  try {
    velmora::FeedTool().run(QCoreApplication::arguments().mid(1));
    return 0;
  } catch (const velmora::FeedTool::UsageError& error) {
    std::cerr << error.what() << '\n' << velmora::FeedTool::usage;
    return 2;
  } catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return 1;
  }
}
