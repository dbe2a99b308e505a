#include "Platform/Tasks/SerialWorker.h"

namespace platform {

SerialWorker::SerialWorker() {
  pool_.setMaxThreadCount(1);
  pool_.setExpiryTimeout(-1);
}

}  // namespace platform
