/**
 * Beautifies skin in the frames of a camera, in place.
 *
 * <p>{@link com.velmira.VKMakeup.MakeupEngine} is what an application uses; {@link com.velmira.VKMakeup.Nv21} makes its
 * frames of camera pictures. {@link com.velmira.VKMakeup.Engine} holds the bare native methods.
 */
package com.velmira.VKMakeup;
