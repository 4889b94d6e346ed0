#include "app/finish/text_recoding.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "app/drawing/label_text.h"
#include "app/drawing/text_decoding.h"
#include "app/finish/symbol_names.h"

namespace dxf2d::finish {

namespace {

bool isPrintableAscii(std::string_view text) {
  return std::ranges::all_of(text, [](char byte) { return byte >= ' ' && byte <= '~'; });
}

std::string asciiOf(const std::string& bytes, unsigned codePage) {
  if (isPrintableAscii(bytes)) {
    return bytes;
  }
  const std::u16string text = textOfName(decodeText(bytes, codePage));
  return {text.begin(), text.end()};
}

void recodeEntities(std::vector<DrawingEntity>& entities, unsigned codePage) {
  for (DrawingEntity& entity : entities) {
    if (auto* text = std::get_if<TextEntity>(&entity)) {
      text->bytes = asciiOf(text->bytes, codePage);
    }
  }
}

std::string recodedName(SymbolNames& names, std::string_view name, unsigned codePage) {
  return names.Add(decodeText(name, codePage));
}

}  // namespace

void recodeTexts(Drawing& drawing, unsigned codePage) {
  recodeEntities(drawing.entities, codePage);
  SymbolNames blockNames;
  drawing.blockNumbers.clear();
  for (std::size_t i = 0; i < drawing.blocks.size(); ++i) {
    DrawingBlock& block = drawing.blocks[i];
    recodeEntities(block.entities, codePage);
    block.name = recodedName(blockNames, block.name, codePage);
    drawing.blockNumbers.emplace(block.name, i);
  }
  SymbolNames layerNames;
  drawing.layerNumbers.clear();
  for (std::size_t i = 0; i < drawing.layers.size(); ++i) {
    Layer& layer = drawing.layers[i];
    layer.name = recodedName(layerNames, layer.name, codePage);
    drawing.layerNumbers.emplace(layer.name, static_cast<std::uint32_t>(i));
  }
}

}  // namespace dxf2d::finish
