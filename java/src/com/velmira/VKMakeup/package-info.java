/**
 * Beautifies skin in the frames of a camera, where they are or on their way elsewhere.
 *
 * <p>{@link com.velmira.VKMakeup.MakeupEngine} is what an application uses; {@link com.velmira.VKMakeup.Frame}
 * describes its frames. {@link com.velmira.VKMakeup.Nv21} packs those that an application wants in an array. {@link
 * com.velmira.VKMakeup.Engine} holds the bare native methods for such arrays.
 */
package com.velmira.VKMakeup;
