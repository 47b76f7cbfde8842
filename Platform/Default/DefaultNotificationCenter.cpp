#include "Platform/Default/DefaultNotificationCenter.h"

#include <algorithm>
#include <atomic>
#include <iterator>
#include <string>
#include <utility>

namespace hlv {

struct DefaultNotificationCenter::Observer {
  Observer(std::string observed, Handler callback)
      : name(std::move(observed)), handler(std::move(callback)) {}
  const std::string name;
  const Handler handler;
  std::atomic<bool> ended{false};
};

class DefaultNotificationCenter::Entry final : public Observation {
 public:
  Entry(std::weak_ptr<DefaultNotificationCenter> center, std::shared_ptr<Observer> observer)
      : center_(std::move(center)), observer_(std::move(observer)) {}

  ~Entry() override {
    observer_->ended = true;
    if (const auto center = center_.lock()) center->remove(observer_);
  }

 private:
  const std::weak_ptr<DefaultNotificationCenter> center_;
  const std::shared_ptr<Observer> observer_;
};

std::unique_ptr<Observation> DefaultNotificationCenter::observe(const NullableString& name,
                                                                Handler handler) {
  if (!name) return nullptr;
  auto observer = std::make_shared<Observer>(*name, std::move(handler));
  {
    const Lock lock(mutex_);
    observers_.push_back(observer);
  }
  return std::make_unique<Entry>(weak_from_this(), std::move(observer));
}

void DefaultNotificationCenter::post(const Notification& notification) {
  std::vector<std::shared_ptr<Observer>> observers;
  {
    const Lock lock(mutex_);
    std::copy_if(observers_.begin(), observers_.end(), std::back_inserter(observers),
                 [&](const auto& observer) { return notification.name == observer->name; });
  }
  for (const auto& observer : observers) {
    if (!observer->ended) observer->handler(notification);
  }
}

void DefaultNotificationCenter::remove(const std::shared_ptr<Observer>& observer) {
  const Lock lock(mutex_);
  std::erase(observers_, observer);
}

}  // namespace hlv
