#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string_view>

#include "zymcore/platform/formats/NSPropertyListSerialization.h"
#include "zymcore/platform/objects/NSManagedObjectContext.h"

// Whatever is taken for a model makes a store in which every entity can be saved.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace zym;
  const auto description = NSPropertyListSerialization::propertyListWithData(
      {reinterpret_cast<const char*>(data), size});
  if (!description || !description->dictionary()) return 0;
  const auto model = NSManagedObjectModel::initWithPropertyList(*description->dictionary());
  if (!model) return 0;

  const auto coordinator = std::make_shared<NSPersistentStoreCoordinator>(model);
  if (!coordinator->addPersistentStoreWithType_configuration_URL_options(NSInMemoryStoreType,
                                                                         std::nullopt, {}, {})) {
    std::abort();
  }
  NSManagedObjectContext context(NSPrivateQueueConcurrencyType);
  context.setPersistentStoreCoordinator(coordinator);
  for (const NSEntityDescription& entity : model->entities()) {
    (void)context.insertNewObjectForEntityForName(entity.name());
  }
  if (!context.save()) std::abort();
  for (const NSEntityDescription& entity : model->entities()) {
    const auto request = NSFetchRequest::fetchRequestWithEntityName(entity.name());
    if (context.countForFetchRequest(request) != 1U) std::abort();
  }
  return 0;
}
