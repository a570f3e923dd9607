<?xml version="1.0"?>
<!-- Recursive named templates: string replacement and tokenising. -->
<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
  <xsl:template name="replace">
    <xsl:param name="text"/>
    <xsl:param name="from"/>
    <xsl:param name="to"/>
    <xsl:choose>
      <xsl:when test="$from != '' and contains($text, $from)">
        <xsl:value-of select="concat(substring-before($text, $from), $to)"/>
        <xsl:call-template name="replace">
          <xsl:with-param name="text" select="substring-after($text, $from)"/>
          <xsl:with-param name="from" select="$from"/>
          <xsl:with-param name="to" select="$to"/>
        </xsl:call-template>
      </xsl:when>
      <xsl:otherwise><xsl:value-of select="$text"/></xsl:otherwise>
    </xsl:choose>
  </xsl:template>
  <xsl:template name="tokens">
    <xsl:param name="list"/>
    <xsl:param name="separator" select="','"/>
    <xsl:variable name="head" select="substring-before(concat($list, $separator), $separator)"/>
    <token empty="{string-length($head) = 0}"><xsl:value-of select="$head"/></token>
    <xsl:if test="contains($list, $separator)">
      <xsl:call-template name="tokens">
        <xsl:with-param name="list" select="substring-after($list, $separator)"/>
        <xsl:with-param name="separator" select="$separator"/>
      </xsl:call-template>
    </xsl:if>
  </xsl:template>
  <xsl:template match="/shop">
    <out>
      <xsl:for-each select="products/product">
        <product sku="{@sku}">
          <xsl:call-template name="replace">
            <xsl:with-param name="text" select="."/>
            <xsl:with-param name="from" select="';'"/>
            <xsl:with-param name="to" select="' |'"/>
          </xsl:call-template>
        </product>
      </xsl:for-each>
      <codes>
        <xsl:call-template name="tokens">
          <xsl:with-param name="list" select="substring-after(note, 'Codes: ')"/>
        </xsl:call-template>
      </codes>
    </out>
  </xsl:template>
</xsl:stylesheet>
