package com.velmira.VKMakeup;

import java.lang.reflect.Method;

/** {@code android.graphics.Bitmap}, where the platform has it. */
final class BitmapClass {
    private static final Class<?> TYPE;
    private static final Method IS_MUTABLE;
    private static final Method IS_RECYCLED;

    static {
        Class<?> type = null;
        Method isMutable = null;
        Method isRecycled = null;
        try {
            type = Class.forName("android.graphics.Bitmap");
            isMutable = type.getMethod("isMutable");
            isRecycled = type.getMethod("isRecycled");
        } catch (ReflectiveOperationException e) {
            type = null; // no Android
        }
        TYPE = type;
        IS_MUTABLE = isMutable;
        IS_RECYCLED = isRecycled;
    }

    private BitmapClass() {}

    static void require(Object bitmap) {
        if (TYPE == null) {
            throw new UnsupportedOperationException("this platform has no class android.graphics.Bitmap");
        }
        if (!TYPE.isInstance(bitmap)) {
            throw new IllegalArgumentException("a " + bitmap.getClass().getName() + ", but must be an "
                    + TYPE.getName());
        }
    }

    static boolean isMutable(Object bitmap) {
        return ask(bitmap, IS_MUTABLE);
    }

    /** The native functions describe some recycled bitmaps as if they had pixels. */
    static boolean isRecycled(Object bitmap) {
        return ask(bitmap, IS_RECYCLED);
    }

    private static boolean ask(Object bitmap, Method question) {
        try {
            return (boolean) question.invoke(bitmap);
        } catch (ReflectiveOperationException e) {
            throw new MakeupException("a bitmap does not answer " + question.getName(), e);
        }
    }
}
