#include "Extensions/CIImage-QNExtensions.h"

namespace kelvane {

CGSize size(const Ref<CIImage>& receiver) { return receiver ? receiver->extent().size : CGSize(); }

}  // namespace kelvane
