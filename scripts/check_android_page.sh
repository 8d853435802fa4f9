#!/usr/bin/env bash
# Compiles the Java lines of docs/android.md as the methods of one class, with this library's classes and stand-ins for
# those of Android and CameraX: names and types of the platform that the page uses, as its reference has them.
set -euo pipefail
cd "$(dirname "$0")/.."
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

stand_in() { # CLASS DECLARATION
  local package=${1%.*} file=$work/platform/${1//.//}.java
  mkdir -p "$(dirname "$file")"
  echo "package $package; public $2" >"$file"
}
plane='{ java.nio.ByteBuffer getBuffer(); int getRowStride(); int getPixelStride(); }'
stand_in android.graphics.Bitmap 'interface Bitmap {
  enum Config { ARGB_8888 }
  static Bitmap createBitmap(int width, int height, Config config) { return null; }
  int getWidth(); int getHeight(); }'
stand_in android.graphics.Canvas 'interface Canvas {
  int getWidth(); int getHeight(); void drawColor(int color); void drawBitmap(Bitmap bitmap, Matrix matrix, Paint paint); }'
stand_in android.graphics.Color 'interface Color { int BLACK = 0xff000000; }'
stand_in android.graphics.Paint 'class Paint {
  public static final int FILTER_BITMAP_FLAG = 2;
  public Paint(int flags) {} }'
stand_in android.graphics.Matrix 'class Matrix {
  public boolean postTranslate(float dx, float dy) { return true; }
  public boolean postScale(float sx, float sy) { return true; }
  public boolean postRotate(float degrees) { return true; } }'
stand_in android.media.Image "interface Image {
  interface Plane $plane
  Plane[] getPlanes(); int getWidth(); int getHeight(); }"
stand_in android.media.MediaCodec 'interface MediaCodec {
  Image getInputImage(int index);
  void queueInputBuffer(int index, int offset, int size, long presentationTimeUs, int flags); }'
stand_in android.media.MediaFormat 'interface MediaFormat {
  int COLOR_STANDARD_BT709 = 1, COLOR_STANDARD_BT601_PAL = 2, COLOR_RANGE_LIMITED = 2;
  String KEY_COLOR_STANDARD = "color-standard", KEY_COLOR_RANGE = "color-range";
  boolean containsKey(String name); int getInteger(String name); }'
stand_in android.os.Build 'interface Build {
  interface VERSION { int SDK_INT = Integer.parseInt("26"); } }'
stand_in android.util.Size 'class Size { public Size(int width, int height) {} }'
stand_in android.view.SurfaceHolder 'interface SurfaceHolder {
  android.graphics.Canvas lockCanvas(); android.graphics.Canvas lockHardwareCanvas();
  void unlockCanvasAndPost(android.graphics.Canvas canvas); }'
stand_in androidx.camera.core.ImageInfo 'interface ImageInfo { int getRotationDegrees(); }'
stand_in androidx.camera.core.ImageProxy "interface ImageProxy extends AutoCloseable {
  interface PlaneProxy $plane
  PlaneProxy[] getPlanes(); int getWidth(); int getHeight(); ImageInfo getImageInfo(); void close(); }"
stand_in androidx.camera.core.ImageAnalysis 'interface ImageAnalysis {
  interface Analyzer { void analyze(ImageProxy image); }
  int STRATEGY_KEEP_ONLY_LATEST = 0;
  class Builder {
    public Builder setResolutionSelector(androidx.camera.core.resolutionselector.ResolutionSelector selector) {
      return this; }
    public Builder setBackpressureStrategy(int strategy) { return this; }
    public ImageAnalysis build() { return null; } }
  void setAnalyzer(java.util.concurrent.Executor executor, Analyzer analyzer);
  void clearAnalyzer(); }'
stand_in androidx.camera.core.resolutionselector.ResolutionStrategy 'class ResolutionStrategy {
  public static final int FALLBACK_RULE_CLOSEST_HIGHER_THEN_LOWER = 2;
  public ResolutionStrategy(android.util.Size size, int rule) {} }'
stand_in androidx.camera.core.resolutionselector.ResolutionSelector 'interface ResolutionSelector {
  class Builder {
    public Builder setResolutionStrategy(ResolutionStrategy strategy) { return this; }
    public ResolutionSelector build() { return null; } } }'

mkdir "$work/page"
{
  printf 'import %s;\n' 'android.graphics.*' 'android.media.*' android.os.Build android.util.Size android.view.SurfaceHolder \
    'androidx.camera.core.*' 'androidx.camera.core.resolutionselector.*' 'com.velmira.VKMakeup.*' \
    java.util.concurrent.ExecutorService
  echo 'class Page { MakeupEngine engine; Bitmap bitmap; SurfaceHolder holder; ExecutorService executor;'
  awk '/^```/ {inside = $0 == "```java" && !inside; next} inside' docs/android.md
  echo '}'
} >"$work/page/Page.java"
grep -q 'void analyze' "$work/page/Page.java"
mapfile -t sources < <(find java/src "$work/platform" "$work/page" -name '*.java')
javac -encoding UTF-8 -Xlint:all,-options --release 8 -Werror -d "$work/classes" "${sources[@]}"
