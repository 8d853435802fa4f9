/// Converts a picture to a frame, beautifies that and converts it back.
#include <stdio.h>

#include <vlvk/makeup.h>
#include <vlvk/rgb_to_yuv.h>
#include <vlvk/version.h>
#include <vlvk/yuv_to_rgb.h>

int main(void) {
  enum { kWidth = 64, kHeight = 32 };
  static unsigned char rgba[kHeight][kWidth * 4], luma[kHeight][kWidth], chroma[kHeight / 2][kWidth];
  VKRGBAToNV21_NeonCall(rgba[0], sizeof rgba[0], luma[0], kWidth, chroma[0], kWidth, kWidth, kHeight);
  VlvkFrame frame = {sizeof frame, VLVK_NV21, VLVK_BT601, VLVK_LIMITED, kWidth, kHeight, {0}, {kWidth, kWidth}};
  frame.plane[0] = luma[0];
  frame.plane[1] = chroma[0];
  VlvkMakeup* makeup = NULL;
  VlvkResult result = vlvkMakeupCreate(&makeup, NULL);
  if (result == VLVK_OK) result = vlvkMakeupProcess(makeup, &frame, &frame, NULL);
  vlvkMakeupDestroy(makeup);
  if (result != VLVK_OK) puts(vlvkResultText(result));
  VKNV21ToRGBA_NeonCall(luma[0], kWidth, chroma[0], kWidth, rgba[0], sizeof rgba[0], kWidth, kHeight);
  puts(VLVK_VERSION_STRING);
  return luma[0][0] == 16 && rgba[kHeight - 1][kWidth * 4 - 1] == 255 && vlvkVersion() == VLVK_VERSION ? 0 : 1;
}
